#pragma once

#include "platform/platform.h"

namespace quorin {

/// Receives the service's events, always on the main queue. The record is the receiver's only while
/// the call runs, and null when the event was no dictionary.
class OsminWrapperDelegate {
 public:
  virtual ~OsminWrapperDelegate() = default;
  virtual void metricsDidUpdate(const EventRecord* metric) = 0;
  virtual void eventsDidUpdate(const EventRecord* trigger) = 0;
};

}  // namespace quorin
