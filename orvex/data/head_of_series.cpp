#include "orvex/data/head_of_series.h"

#include <algorithm>
#include <cstddef>

#include "orvex/data/columns.h"
#include "orvex/data/continuation.h"
#include "orvex/data/host_events.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

bool mayGoInOnePass(Integer count, std::int64_t head, std::initializer_list<const Field*> sources) {
  constexpr int many = 2048;
  if (count < many || head > count.value() / 4 || count == Integer::Greatest) return false;
  if (Continuation::current() != nullptr || yieldHook() || kernels::active() == nullptr) return false;
  return std::all_of(sources.begin(), sources.end(), [&](const Field* source) {
    return source != nullptr && source->values().size() == static_cast<std::size_t>(count.value());
  });
}

std::shared_ptr<Field> headOf(const Field& column, std::int64_t count) {
  const auto head = std::make_shared<Field>();
  head->view(column.rows().part(0, static_cast<std::size_t>(count)), column.name());
  return head;
}

std::shared_ptr<Field> lengthened(const Field& head, Integer count) {
  const auto column = makeColumn(count, head.name(), std::int64_t{head.getRecordCount().value()} + 1);
  const auto rows = head.values();
  std::copy(rows.begin(), rows.end(), column->writableValues().begin());
  return column;
}

}  // namespace orvex::inline ORVEX_COUNTS
