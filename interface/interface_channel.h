#pragma once

#include <QJSValue>
#include <QObject>
#include <QVariantMap>

#include "bridge/channel_client.h"

namespace tolvane {

/// The channel, for the interface's script. Main thread only.
class InterfaceChannel final : public QObject {
  Q_OBJECT

 public:
  /// @param messenger the interface's end; not owned; outlives this object.
  explicit InterfaceChannel(BinaryMessenger& messenger);

  /// @param answered called once with (result, error): a result is null beside an error, and an
  /// error is null or a map of "code" and "message". May be no function.
  Q_INVOKABLE void call(const QString& method,
                        const QVariantMap& arguments = {},
                        const QJSValue& answered = {});

  /// @param offer as the host sent it. @param chosen the options that the user set.
  /// @return "action" and "options" of the offer's job. Throws in the script for a wrong option.
  Q_INVOKABLE QVariantMap jobOf(const QVariantMap& offer, const QVariantMap& chosen);

 Q_SIGNALS:
  void event(const QVariantMap& event);

 private:
  ChannelClient client_;
};

}  // namespace tolvane
