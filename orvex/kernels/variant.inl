// The kernels of one instruction set: included by a translation unit that is compiled for it and that names it in
// ORVEX_VARIANT.
#include "orvex/kernels/cascades.inl"
#include "orvex/kernels/chains.inl"
#include "orvex/kernels/cycles.inl"
#include "orvex/kernels/extremes.inl"
#include "orvex/kernels/oscillators.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/pointwise.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/recursions.inl"
#include "orvex/kernels/standard.inl"
#include "orvex/kernels/strength.inl"
#include "orvex/kernels/sums.inl"
#include "orvex/kernels/totals.inl"
#include "orvex/kernels/variants.h"
#include "orvex/kernels/windows.inl"

namespace orvex::inline ORVEX_COUNTS::kernels::ORVEX_VARIANT {

const Variant variant = {
    .table =
        {
            .mean = mean,
            .weightedMean = weightedMean,
            .exponential = exponential,
            .approach = approach,
            .regression = regression,
            .highest = highest,
            .lowest = lowest,
            .peaks = fractals<Highest>,
            .valleys = fractals<Lowest>,
            .deviation = deviation,
            .handled = handled,
            .copy = copy,
            .around = around,
            .medianPrice = medianPrice,
            .typicalPrice = typicalPrice,
            .weightedClose = weightedClose,
            .rateOfChange = rateOfChange,
            .rateOfChangeKept = rateOfChangeKept,
            .blend = blend,
            .variable = variable,
            .movementProducts = movementProducts,
            .trueRange = trueRange,
            .directionalMoves = directionalMoves,
            .wholePercent = wholePercent,
            .directionalIndex = directionalIndex,
            .averageIndex = averageIndex,
            .meanHalfUp = meanHalfUp,
            .aroon = aroon,
            .place = place,
            .rangeToPath = rangeToPath,
            .balanceOfMoves = balanceOfMoves,
            .momentum = momentum,
            .buyingPressure = buyingPressure,
            .ultimate = ultimate,
            .parabolic = parabolic,
            .accumulation = accumulation,
            .easeOfMovement = easeOfMovement,
            .breakouts = breakouts,
            .difference = difference,
            .percentAbove = percentAbove,
            .fallInPercent = fallInPercent,
            .crossings = crossings<false>,
            .penetrations = crossings<true>,
            .runningTotal = runningTotal,
            .onBalanceVolume = onBalanceVolume,
            .priceVolumeTrend = priceVolumeTrend,
            .positiveVolume = volumeIndex<true>,
            .negativeVolume = volumeIndex<false>,
            .tradeVolume = tradeVolume,
            .swing = swing,
            .performance = performance,
            .ratio = ratio,
            .strength = strength,
            .moneyFlowIndex = moneyFlowIndex<Percentage, false>,
            .ratioSum = ratioSum,
            .moneyFlow = moneyFlow,
            .channel = channel,
            .fromMiddle = fromMiddle,
            .percentOfHalf = percentOfHalf,
        },
    .chains =
        {
            .convergence = convergence<Exponential>,
            .approachConvergence = convergence<Approach>,
            .difference = differenceOfAverages,
            .trueStrength = trueStrength,
            .tripleRate = cascade<Exponential, 3, standard::formulas::PercentRate, 3, 0>,
            .approachTripleRate = cascade<Approach, 3, standard::formulas::PercentRate, 3, 0>,
            .ratioOfAverages = cascade<Approach, 2, standard::formulas::Ratio, 1, 2>,
            .doubleAverage = cascade<Approach, 2, standard::formulas::TwiceLess, 1, 2>,
            .tripleAverage = cascade<Approach, 3, standard::formulas::ThriceLess, 1, 2, 3>,
            .tillson = cascade<Approach, 6, standard::formulas::Combined, 6, 5, 4, 3>,
        },
};

constexpr StandardTable withoutPointwise = {
    .pointwise = {},
    .leakySum = leakySum,
    .leakyMean = leakyMean,
    .follow = follow,
    .sum = windowSum,
    .ultimate = ultimateOfSums,
    .moneyFlowTotal = moneyFlowTotal,
    .meanPrice = meanPrice,
    .moneyFlowIndex = moneyFlowIndex<standard::formulas::ShareOfBoth, true>,
    .lineEnd = lineOf<standard::formulas::LineEnd>,
    .lineSlope = lineOf<standard::formulas::LineSlope>,
    .lineStart = lineOf<standard::formulas::LineStart>,
    .lineAhead = lineOf<standard::formulas::LineAhead>,
    .below = below,
    .scatter = scatterAround,
    .highestRecord = recordOf<Highest>,
    .lowestRecord = recordOf<Lowest>,
    .highestAge = ageOf<Highest>,
    .lowestAge = ageOf<Lowest>,
    .parabolicStop = parabolicStop,
    .superTrend = superTrend,
    .heikinAshi = heikinAshi,
    .dominantCycle = dominantCycle,
    .phasor = phasor,
    .shareOfMoves = ofMoves<standard::formulas::ShareOfBoth>,
    .balanceOfMoves = ofMoves<standard::formulas::Balance>,
    .middleOfExtremes = ofExtremes<standard::formulas::Middle>,
    .placeInExtremes = ofExtremes<standard::formulas::Place>,
    .placeBelowExtremes = ofExtremes<standard::formulas::PlaceBelow>,
};
const StandardTable standardTable = Pointwise<standard::Formulas>::table(withoutPointwise);

}  // namespace orvex::inline ORVEX_COUNTS::kernels::ORVEX_VARIANT
