#include "bridge/json_rpc_host.h"

#include <utility>

#include "engine/json/value_json.h"

namespace tolvane {

namespace {

constexpr const char* protocolVersion = "2.0";

/// Codes and messages of JSON-RPC 2.0, section 5.1.
struct RpcError {
  int code;
  std::string message;
  Value data = nullptr;
};
const RpcError parseError = {-32700, "Parse error"};
const RpcError invalidRequest = {-32600, "Invalid Request"};
const RpcError methodNotFound = {-32601, "Method not found"};
const RpcError invalidParams = {-32602, "Invalid params"};
constexpr int channelErrorCode = -32000;  // the first of those left to servers

struct Request {
  std::optional<Value> id;  // absent: a notification, which is not answered
  std::string method;
  Value params;
};

bool isIdentifier(const Value& id) {
  return id.isNull() || id.text() != nullptr || (id.number().has_value() && !id.flag());
}

/// A request's id, if the message has one that can be repeated; null otherwise.
Value identifierIn(const Value& message) {
  const Value& id = message["id"];
  return isIdentifier(id) ? id : Value();
}

std::optional<Request> requestIn(const Value& message) {
  const Value::Map* members = message.map();
  if (members == nullptr || message["jsonrpc"] != Value(protocolVersion)) {
    return std::nullopt;
  }
  const bool hasId = members->contains("id");
  const std::string* method = message["method"].text();
  const Value& params = message["params"];
  const bool isStructured = params.map() != nullptr || params.list() != nullptr;
  if (!isIdentifier(message["id"]) || method == nullptr ||
      (members->contains("params") && !isStructured)) {
    return std::nullopt;
  }
  return Request{hasId ? std::optional(message["id"]) : std::nullopt, *method, params};
}

std::string resultLine(const Value& id, const Value& result) {
  return ValueJson::write(Value::Map{{"jsonrpc", protocolVersion}, {"id", id}, {"result", result}});
}

std::string errorLine(const Value& id, const RpcError& error) {
  Value::Map body = {{"code", error.code}, {"message", error.message}};
  if (!error.data.isNull()) {
    body["data"] = error.data;
  }
  return ValueJson::write(Value::Map{{"jsonrpc", protocolVersion}, {"id", id}, {"error", body}});
}

std::string replyLine(const Value& id, const ChannelReply& reply) {
  if (const auto* result = std::get_if<Value>(&reply)) {
    return resultLine(id, *result);
  }
  if (const auto* error = std::get_if<ChannelError>(&reply)) {
    const Value::Map data = {{"code", error->code}, {"details", error->details}};
    return errorLine(id, {channelErrorCode, error->message, data});
  }
  return errorLine(id, methodNotFound);
}

}  // namespace

JsonRpcHost::JsonRpcHost(Bridge& bridge,
                         BinaryMessenger& messenger,
                         Output output,
                         std::function<void()> finished)
    : bridge_(bridge),
      client_(messenger),
      conversation_(
          std::make_shared<Conversation>(Conversation{std::move(output), std::move(finished)})) {
  client_.onEvent([listener = std::weak_ptr(conversation_)](const Value::Map& event) {
    if (const auto conversation = listener.lock()) {
      conversation->output(ValueJson::write(
          Value::Map{{"jsonrpc", protocolVersion}, {"method", eventMethod}, {"params", event}}));
    }
  });
}

void JsonRpcHost::receive(std::string_view line) {
  if (conversation_->isQuitting) {
    return;
  }
  Value message;
  try {
    message = ValueJson::parse(line);
  } catch (const ValueJson::BoundsError& error) {
    conversation_->output(errorLine(nullptr, {parseError.code, parseError.message, error.what()}));
    return;
  } catch (const ValueJson::ParseError&) {
    conversation_->output(errorLine(nullptr, parseError));
    return;
  }
  const auto request = requestIn(message);
  if (!request) {
    conversation_->output(errorLine(identifierIn(message), invalidRequest));
  } else if (request->method == "host.quit") {
    quit(request->id);
  } else if (request->method == "host.select") {
    select(request->id, request->params);
  } else {
    client_.call(request->method,
                 request->params,
                 [caller = std::weak_ptr(conversation_), id = request->id](const auto& reply) {
                   const auto conversation = caller.lock();
                   if (conversation && id) {
                     conversation->output(replyLine(*id, reply));
                   }
                 });
  }
}

void JsonRpcHost::select(const std::optional<Value>& id, const Value& params) {
  const auto paths = params["paths"].texts();
  if (paths) {
    bridge_.select({paths->begin(), paths->end()});
  }
  if (id) {
    conversation_->output(paths ? resultLine(*id, nullptr) : errorLine(*id, invalidParams));
  }
}

void JsonRpcHost::endOfInput() {
  if (!conversation_->isQuitting) {
    quit(std::nullopt);
  }
}

void JsonRpcHost::quit(const std::optional<Value>& id) {
  conversation_->isQuitting = true;
  const auto finish = [caller = std::weak_ptr(conversation_), id] {
    if (const auto conversation = caller.lock()) {
      if (id) {
        conversation->output(resultLine(*id, nullptr));
      }
      conversation->finished();
    }
  };
  if (!bridge_.prepareToQuit(finish)) {
    // Files that were handed in last are still inspected, and their reader told.
    bridge_.whenWorkIsDone(finish);
  }
}

}  // namespace tolvane
