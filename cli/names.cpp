#include "cli/names.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "cli/failure.h"
#include "orvex/data/text.h"

namespace orvex::cli {

using catalogue::Class;
using catalogue::Method;

namespace {

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

/// The capital letters of a name, which abbreviate it: SMA.
std::string capitalsOf(std::string_view name) {
  std::string result;
  std::copy_if(name.begin(), name.end(), std::back_inserter(result), [](char c) { return c >= 'A' && c <= 'Z'; });
  return result;
}

/// How many letters must be put in, left out, replaced or swapped with their neighbour to make `b` of `a`.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> beforeLast, last, row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast = std::exchange(last, row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row[b.size()];
}

/// A name that may have been meant.
struct Candidate {
  std::size_t slips;
  std::string name;

  friend bool operator==(const Candidate&, const Candidate&) = default;
};

/// Adds `name` to the candidates if `key`, which stands for it, is a few slips away from `text`, has it as a part or is
/// abbreviated by it.
void consider(std::vector<Candidate>& candidates, std::string_view text, std::string_view key, std::string name) {
  constexpr std::size_t shortestPart = 3;
  const std::string wanted = lowered(text);
  const std::string candidate = lowered(key);
  const bool abbreviated = !wanted.empty() && wanted == lowered(capitalsOf(key));
  const std::size_t slips = abbreviated ? 0 : editDistance(wanted, candidate);
  const bool partOf = wanted.size() >= shortestPart && candidate.find(wanted) != std::string::npos;
  if (slips <= std::max<std::size_t>(1, wanted.size() / 3) || partOf) candidates.push_back({slips, std::move(name)});
}

void considerMethods(std::vector<Candidate>& candidates, std::string_view text, const Class& owner) {
  for (const Method* method : owner.methods) {
    const std::string name = fullName(owner, *method);
    consider(candidates, text, method->name, name);
    const auto& known = method->abbreviations;
    const bool isShort =
        std::any_of(known.begin(), known.end(), [&](std::string_view one) { return equalNames(one, text); });
    if (isShort) candidates.push_back({0, name});
  }
}

/// The nearest few of the candidates as a question, without those that are much further away than the first.
std::string ask(std::vector<Candidate> candidates) {
  constexpr std::size_t most = 3;
  if (candidates.empty()) return {};
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.slips < b.slips; });
  candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
  std::vector<std::string> names;
  for (const Candidate& candidate : candidates) {
    if (names.size() == most || candidate.slips > 2 * candidates.front().slips) break;
    names.push_back(candidate.name);
  }
  return fmt::format(" Did you mean {}?", enumerate(names, "or"));
}

[[noreturn]] void refuseClass(std::string_view className, std::string_view method) {
  std::vector<Candidate> candidates;
  for (const Class* owner : catalogue::classes()) {
    consider(candidates, className, owner->name, std::string(owner->name));
    considerMethods(candidates, method, *owner);
  }
  throw UsageError(fmt::format("there is no class{} \"{}\".{} \"orvex list\" shows them all.",
                               method == className ? " or method" : "", className, ask(candidates)));
}

[[noreturn]] void refuseMethod(const Class& owner, std::string_view name) {
  std::vector<Candidate> candidates;
  considerMethods(candidates, name, owner);
  if (candidates.empty()) {
    for (const Class* other : catalogue::classes()) considerMethods(candidates, name, *other);
  }
  throw UsageError(fmt::format("{0} has no method \"{1}\".{2} \"orvex describe {0}\" shows those that it has.",
                               owner.name, name, ask(candidates)));
}

}  // namespace

std::string enumerate(const std::vector<std::string>& names, std::string_view lastWord) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? fmt::format(" {} ", lastWord) : ", ";
    text += names[i];
  }
  return text;
}

std::string counted(long long count, std::string_view noun) {
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string didYouMean(std::string_view text, const std::vector<std::string>& names) {
  std::vector<Candidate> candidates;
  for (const std::string& name : names) consider(candidates, text, name, name);
  return ask(candidates);
}

Target findTarget(std::string_view text) {
  const std::size_t point = text.find('.');
  const std::string_view className = text.substr(0, point);
  const std::string_view name = point == std::string_view::npos ? "" : text.substr(point + 1);
  const Class* owner = catalogue::findClass(className);
  if (owner == nullptr && point == std::string_view::npos) {
    if (const auto found = catalogue::findCalculation(text)) return {found->owner, {found->method}};
  }
  if (owner == nullptr) refuseClass(className, point == std::string_view::npos ? text : name);
  Target target{owner, {}};
  if (point == std::string_view::npos) return target;
  for (const Method* method : owner->methods) {
    if (equalNames(method->name, name)) target.methods.push_back(method);
  }
  if (target.methods.empty()) refuseMethod(*owner, name);
  return target;
}

std::string fullName(const Class& owner, const Method& method) {
  return fmt::format("{}.{}", owner.name, method.name);
}

}  // namespace orvex::cli
