#include "interface/interface_channel.h"

#include <variant>

#include <QJSEngine>
#include <QPointer>
#include <QQmlEngine>

#include "bridge/offer_job.h"
#include "interface/value_variant.h"

namespace tolvane {

namespace {

struct Answer {
  QVariant result = QVariant::fromValue(nullptr);
  QVariant error = QVariant::fromValue(nullptr);

  void operator()(const Value& value) { result = ValueVariant::fromValue(value); }
  void operator()(const ChannelError& failure) {
    error = QVariantMap{{"code", QString::fromStdString(failure.code)},
                        {"message", ValueVariant::fromText(failure.message)}};
  }
  void operator()(const NotImplemented&) {
    error = QVariantMap{{"code", "notImplemented"}, {"message", "This is not possible here."}};
  }
};

}  // namespace

InterfaceChannel::InterfaceChannel(BinaryMessenger& messenger) : client_(messenger) {
  client_.onEvent([self = QPointer(this)](const Value::Map& told) {
    if (self) {
      Q_EMIT self->event(ValueVariant::fromMap(told));
    }
  });
}

void InterfaceChannel::call(const QString& method,
                            const QVariantMap& arguments,
                            const QJSValue& answered) {
  client_.call(
      method.toStdString(),
      ValueVariant::toValue(arguments),
      [self = QPointer(this), answered](const ChannelReply& reply) {
        QJSEngine* engine = self ? qjsEngine(self) : nullptr;
        if (engine == nullptr || !answered.isCallable()) {
          return;
        }
        Answer answer;
        std::visit(answer, reply);
        answered.call({engine->toScriptValue(answer.result), engine->toScriptValue(answer.error)});
      });
}

QVariantMap InterfaceChannel::jobOf(const QVariantMap& offer, const QVariantMap& chosen) {
  try {
    const OfferJob job =
        OfferJob::make(ValueVariant::toValue(offer), *ValueVariant::toValue(chosen).map());
    return {{"action", ValueVariant::fromText(job.action)},
            {"options", ValueVariant::fromMap(job.options)}};
  } catch (const UnknownOption& unknown) {
    qjsEngine(this)->throwError(ValueVariant::fromText(unknown.what()));
    return {};
  }
}

}  // namespace tolvane
