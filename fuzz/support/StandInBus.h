#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "fuzz/support/wire_message.h"

namespace quorin::fuzz {

/// The system's bus for one service of this process: a thread answers what the service asks of the
/// bus itself and keeps what it answers to clients, in whose names calls are made here.
class StandInBus {
 public:
  /// From now on the service finds this bus.
  StandInBus();
  StandInBus(const StandInBus&) = delete;
  StandInBus& operator=(const StandInBus&) = delete;

  /// What the service answered to a call.
  struct Answer {
    std::uint8_t type;  // SD_BUS_MESSAGE_METHOD_RETURN or _ERROR
    std::string body;
    bus::Descriptor descriptor;  // of EventsOn
  };

  /// Forgets the service that was here before. Requires: it is gone.
  void startAnew();
  /// Sends a message to the service; gives its serial number.
  std::uint32_t send(const MessageHeader& header, std::string_view body);
  /// Sends bytes as they are.
  void sendRaw(std::string_view bytes);
  /// Tells the service that a client left the bus.
  void leave(std::string_view name);
  /// Waits for the answer; empty: the service left the bus. Ends the run when it never comes.
  [[nodiscard]] std::optional<Answer> answer(std::uint32_t serial);
  /// Answers that were not asked for, or a second time.
  [[nodiscard]] std::size_t strayAnswers();

 private:
  struct Received;
  void run();
  void serve(int socket);
  void take(Received message);

  bus::Descriptor _listening;
  std::mutex _mutex;
  std::condition_variable _changed;
  int _socket = -1;  // of the service that is here
  std::uint32_t _serial = 0;
  std::map<std::uint32_t, bool> _calls;  // open ones; true: answered
  std::map<std::uint32_t, Answer> _answers;
  std::size_t _stray = 0;
  std::thread _thread;
};

}  // namespace quorin::fuzz
