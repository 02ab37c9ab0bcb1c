#pragma once

#include <functional>
#include <map>
#include <string>

#include "bridge/method_channel.h"
#include "engine/primitives/value.h"

namespace tolvane {

/// The host's methods by name. Each room of the bridge adds its own.
class MethodTable {
 public:
  /// Answers now or later.
  using Handler = std::function<void(const Value::Map& arguments, const MethodReply& reply)>;
  /// The answer itself.
  using Function = std::function<Value(const Value::Map& arguments)>;

  void add(const std::string& method, Handler handler);
  void addFunction(const std::string& method, Function function);

  /// A call without a map as its arguments is handled with an empty one; an unknown method is
  /// answered as not implemented.
  void dispatch(const MethodCall& call, const MethodReply& reply) const;

 private:
  std::map<std::string, Handler> handlers_;
};

}  // namespace tolvane
