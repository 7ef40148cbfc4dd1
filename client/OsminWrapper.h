#pragma once

#include <atomic>
#include <memory>
#include <string_view>

#include "client/OsminWrapperDelegate.h"
#include "platform/platform.h"

namespace quorin {

/// The one place that talks to the baseband-manager service: configures it, asks it, and hands each
/// event to one delegate. Commands block the calling thread, which is the main one; events are
/// taken on the wrapper's own serial queue and delivered on the main queue.
class OsminWrapper : public std::enable_shared_from_this<OsminWrapper> {
 public:
  /// The one wrapper of the process, made on the first call. Main thread.
  [[nodiscard]] static const std::shared_ptr<OsminWrapper>& sharedInstance();

  /// Makes the manager, on the wrapper's queue.
  void init();

  /// The serial queue: made once per process, for the wrapper that asked first; null for others.
  [[nodiscard]] dispatch_queue_t queue();

  /// Commands: true when the service answers status 0. An application ID other than "quorin" sends
  /// nothing and answers false. An unreadable configuration file is sent as no bytes.
  [[nodiscard]] bool addVantorConfigForAppId(std::string_view appId,
                                             const std::string& andProtofFilePath);
  [[nodiscard]] bool removeVantorConfigForAppid(std::string_view appId);
  /// What the query yields arrives later as ordinary events.
  [[nodiscard]] bool querySpecificMetric(std::string_view appId, std::int32_t triggerRef,
                                         std::int32_t triggerType, std::int32_t triggerID,
                                         std::int32_t profileID, std::int32_t metricID);

  /// Registers both event handlers and restarts delivery, each time that it is called.
  void listen();

  /// Held weakly; null once it is gone. Any thread.
  [[nodiscard]] std::shared_ptr<OsminWrapperDelegate> delegate() const {
    return _delegate.load().lock();
  }
  void setDelegate(std::weak_ptr<OsminWrapperDelegate> delegate) {
    _delegate.store(std::move(delegate));
  }

 private:
  bool perform(const char* command, const XpcRef& input, const char* caller);
  [[nodiscard]] osmin::EventHandler handlerOf(const struct EventKind& kind);

  std::shared_ptr<osmin::client::Manager> _osminManager;
  dispatch_queue_t _queue;
  std::atomic<std::weak_ptr<OsminWrapperDelegate>> _delegate;
};

}  // namespace quorin
