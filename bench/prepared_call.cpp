#include "bench/prepared_call.h"

#include <string>

#include "orvex/catalogue/usual.h"

namespace orvex::bench {

using catalogue::Value;

PreparedCall::PreparedCall(const Case& one, const std::shared_ptr<Database>& data) {
  const std::size_t dot = one.method.find('.');
  const catalogue::Class* owner = catalogue::findClass(one.method.substr(0, dot));
  method_ = catalogue::findMethod(*owner, one.method.substr(dot + 1));
  object_ = owner->create();
  for (const catalogue::Argument& argument : method_->arguments) {
    const auto given = one.arguments.find(std::string(argument.name));
    arguments_.push_back(given == one.arguments.end() ? Value(catalogue::Missing{}) : Value(given->second));
  }
  catalogue::takeUsual(*method_, arguments_, data);
}

Value PreparedCall::run() const {
  std::vector<Value> values = arguments_;
  return catalogue::call(*method_, object_.get(), values);
}

}  // namespace orvex::bench
