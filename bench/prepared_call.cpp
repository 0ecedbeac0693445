#include "bench/prepared_call.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

namespace orvex::bench {

namespace {

using catalogue::Type;
using catalogue::Value;

Value argumentOf(const catalogue::Argument& argument, const Case& one, const std::shared_ptr<Database>& data) {
  const std::string name(argument.name);
  const auto given = one.arguments.find(name);
  switch (argument.type) {
    case Type::Database:
      return data;
    case Type::RecordSet:
      return data->getRecordset();
    case Type::Field:
      return data->getRecordset()->getField(data->getRecordset()->isValidField(name) ? name : "Close");
    default:
      break;
  }
  if (given != one.arguments.end()) return given->second;
  if (name == "EndPeriod") return data->getRecordCount();
  const std::string usual = usualArgument(name);
  if (!usual.empty()) return usual;
  if (argument.optional) return catalogue::Missing{};
  throw std::invalid_argument(fmt::format("bench/cases.cpp has no usual value for the argument {}", name));
}

}  // namespace

PreparedCall::PreparedCall(const Case& one, const std::shared_ptr<Database>& data) {
  const std::size_t dot = one.method.find('.');
  const catalogue::Class* owner = catalogue::findClass(one.method.substr(0, dot));
  method_ = catalogue::findMethod(*owner, one.method.substr(dot + 1));
  object_ = owner->create();
  for (const catalogue::Argument& argument : method_->arguments) arguments_.push_back(argumentOf(argument, one, data));
}

Value PreparedCall::run() const {
  std::vector<Value> values = arguments_;
  return catalogue::call(*method_, object_.get(), values);
}

}  // namespace orvex::bench
