#include "cli/names.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/failure.h"
#include "orvex/data/text.h"

namespace orvex::cli {

namespace {

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
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

/// Up to three of `names`, the nearest first: those that a few slips away, then those that `text` is a part of.
std::vector<std::string> nearest(std::string_view text, const std::vector<std::string>& names) {
  constexpr std::size_t most = 3;
  constexpr std::size_t shortestPart = 3;
  const std::string wanted = lowered(text);
  std::vector<std::pair<std::size_t, std::string>> near;
  for (const std::string& name : names) {
    const std::string candidate = lowered(name);
    const std::size_t slips = editDistance(wanted, candidate);
    const bool partOf = wanted.size() >= shortestPart && candidate.find(wanted) != std::string::npos;
    if (slips <= std::max<std::size_t>(1, wanted.size() / 3) || partOf) near.emplace_back(slips, name);
  }
  std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  if (near.size() > most) near.resize(most);
  std::vector<std::string> result;
  for (auto& [slips, name] : near) result.push_back(std::move(name));
  return result;
}

std::vector<std::string> classNames() {
  std::vector<std::string> names;
  for (const catalogue::Class* one : catalogue::classes()) names.emplace_back(one->name);
  return names;
}

/// Suggestions for a method's name: full names, found by the name of the method alone.
std::string didYouMeanMethod(std::string_view name, std::span<const catalogue::Class* const> among) {
  std::vector<std::string> methods;
  for (const catalogue::Class* owner : among) {
    for (const catalogue::Method* method : owner->methods) methods.emplace_back(method->name);
  }
  std::vector<std::string> full;
  for (const std::string& method : nearest(name, methods)) {
    for (const catalogue::Class* owner : among) {
      const bool has = std::any_of(owner->methods.begin(), owner->methods.end(),
                                   [&](const catalogue::Method* one) { return one->name == method; });
      const std::string candidate = fmt::format("{}.{}", owner->name, method);
      if (has && std::find(full.begin(), full.end(), candidate) == full.end()) full.push_back(candidate);
    }
  }
  return full.empty() ? "" : fmt::format(" Did you mean {}?", enumerate(full, "or"));
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

std::string didYouMean(std::string_view text, const std::vector<std::string>& names) {
  const std::vector<std::string> near = nearest(text, names);
  return near.empty() ? "" : fmt::format(" Did you mean {}?", enumerate(near, "or"));
}

Target findTarget(std::string_view text) {
  const std::size_t point = text.find('.');
  const std::string_view className = text.substr(0, point);
  const catalogue::Class* owner = catalogue::findClass(className);
  if (owner == nullptr) {
    std::string hint = didYouMean(className, classNames());
    if (hint.empty()) {
      const std::string_view method = point == std::string_view::npos ? text : text.substr(point + 1);
      hint = didYouMeanMethod(method, catalogue::classes());
    }
    throw UsageError(fmt::format("there is no class \"{}\".{} \"orvex list\" shows them all.", className, hint));
  }
  Target target{owner, {}};
  if (point == std::string_view::npos) return target;
  const std::string_view name = text.substr(point + 1);
  for (const catalogue::Method* method : owner->methods) {
    if (equalNames(method->name, name)) target.methods.push_back(method);
  }
  if (target.methods.empty()) {
    std::string hint = didYouMeanMethod(name, std::span(&owner, 1));
    if (hint.empty()) hint = didYouMeanMethod(name, catalogue::classes());
    throw UsageError(fmt::format("{0} has no method \"{1}\".{2} \"orvex describe {0}\" shows those that it has.",
                                 owner->name, name, hint));
  }
  return target;
}

std::string fullName(const catalogue::Class& owner, const catalogue::Method& method) {
  return fmt::format("{}.{}", owner.name, method.name);
}

}  // namespace orvex::cli
