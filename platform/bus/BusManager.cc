#include "platform/bus/BusManager.h"

#include <sys/eventfd.h>

#include <atomic>
#include <future>
#include <map>
#include <mutex>
#include <vector>

#include "platform/bus/Session.h"
#include "platform/bus/protocol.h"

namespace quorin::bus {

namespace {

/// Events on the queue at which reading stops, and at which it goes on.
constexpr std::size_t kMostPending = 1024;
constexpr std::size_t kFewPending = 256;

/// An sd-event loop on a thread of its own, and work posted to it.
class LoopThread {
 public:
  LoopThread() : _wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    sd_event* loop = nullptr;
    (void)sd_event_new(&loop);
    _loop.reset(loop);
    (void)sd_event_add_io(loop, nullptr, _wake.get(), EPOLLIN, onWake, this);
  }
  ~LoopThread() { stop(); }
  LoopThread(const LoopThread&) = delete;
  LoopThread& operator=(const LoopThread&) = delete;

  [[nodiscard]] sd_event* loop() const { return _loop.get(); }
  void start() {
    _thread = std::thread([this] { (void)sd_event_loop(_loop.get()); });
  }
  void post(std::function<void()> work) {
    {
      const std::lock_guard lock(_mutex);
      _work.push_back(std::move(work));
    }
    (void)eventfd_write(_wake.get(), 1);
  }
  /// Ends the thread once the work posted before is done.
  void stop() {
    if (!_thread.joinable()) return;
    post([this] { (void)sd_event_exit(_loop.get(), 0); });
    _thread.join();
  }

 private:
  static int onWake(sd_event_source* /*source*/, int fd, std::uint32_t /*events*/, void* self) {
    auto& thread = *static_cast<LoopThread*>(self);
    eventfd_t count = 0;
    (void)eventfd_read(fd, &count);
    std::vector<std::function<void()>> work;
    {
      const std::lock_guard lock(thread._mutex);
      work.swap(thread._work);
    }
    for (const auto& piece : work) piece();
    return 0;
  }

  Descriptor _wake;
  EventLoop _loop;
  std::mutex _mutex;
  std::vector<std::function<void()>> _work;
  std::thread _thread;
};

class BusManager final : public osmin::client::Manager,
                         public std::enable_shared_from_this<BusManager> {
 public:
  explicit BusManager(dispatch_queue_t queue)
      : _queue(std::move(queue)),
        _session(std::make_unique<Session>(
            _thread.loop(), [this](std::uint64_t /*sequence*/, const std::string& kind,
                                   const XpcRef& event) { deliver(kind, event); })) {
    _thread.start();
  }
  // The session's connections belong to the loop's thread until that has ended.
  ~BusManager() override {
    _thread.stop();
    _session.reset();
  }

  osmin::CommandResult perform(const std::string& command, xpc_object_t input,
                               xpc_object_t* /*output*/) override {
    auto result = std::make_shared<std::promise<osmin::CommandResult>>();
    auto answer = result->get_future();
    _thread.post([this, command, held = XpcRef(xpc_retain(input)), result] {
      _session->perform(command, held,
                        [result](const osmin::CommandResult& r) { result->set_value(r); });
    });
    return answer.get();  // the session answers within the command's time
  }

  void registerHandler(const std::string& event, osmin::EventHandler handler) override {
    const std::lock_guard lock(_mutex);
    _handlers[event] = std::make_shared<osmin::EventHandler>(std::move(handler));
  }

  void eventsOff() override {
    _thread.post([this] { _session->eventsOff(); });
  }
  void eventsOn() override {
    _thread.post([this] { _session->eventsOn(); });
  }

 private:
  void deliver(const std::string& kind, const XpcRef& event) {
    std::shared_ptr<osmin::EventHandler> handler;
    {
      const std::lock_guard lock(_mutex);
      const auto found = _handlers.find(kind);
      if (found == _handlers.end() || !_queue) return;
      handler = found->second;
    }
    if (++*_pending >= kMostPending) _session->setReading(false);
    dispatch_async(*_queue, [weak = weak_from_this(), handler, event, pending = _pending] {
      (*handler)(event.get(), nullptr);
      if (--*pending != kFewPending) return;
      if (const auto self = weak.lock())
        self->_thread.post([raw = self.get()] { raw->_session->setReading(true); });
    });
  }

  dispatch_queue_t _queue;
  std::mutex _mutex;
  std::map<std::string, std::shared_ptr<osmin::EventHandler>> _handlers;
  std::shared_ptr<std::atomic<std::size_t>> _pending =
      std::make_shared<std::atomic<std::size_t>>(0);
  LoopThread _thread;
  std::unique_ptr<Session> _session;
};

}  // namespace

void install() {
  osmin::client::setManagerFactory([](const std::string& /*clientName*/, dispatch_queue_t queue) {
    return std::make_shared<BusManager>(std::move(queue));
  });
}

}  // namespace quorin::bus
