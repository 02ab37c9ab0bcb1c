#include "bridge/method_table.h"

#include <utility>

namespace tolvane {

void MethodTable::add(const std::string& method, Handler handler) {
  handlers_[method] = std::move(handler);
}

void MethodTable::addFunction(const std::string& method, Function function) {
  add(method,
      [function = std::move(function)](const Value::Map& arguments, const MethodReply& reply) {
        reply.success(function(arguments));
      });
}

void MethodTable::dispatch(const MethodCall& call, const MethodReply& reply) const {
  const auto found = handlers_.find(call.method);
  if (found == handlers_.end()) {
    reply.notImplemented();
    return;
  }
  static const Value::Map none;
  const Value::Map* arguments = call.arguments.map();
  found->second(arguments != nullptr ? *arguments : none, reply);
}

}  // namespace tolvane
