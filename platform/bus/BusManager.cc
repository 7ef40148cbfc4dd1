#include "platform/bus/BusManager.h"

#include <sys/eventfd.h>

#include <future>
#include <map>
#include <mutex>
#include <vector>

#include "platform/bus/Session.h"
#include "platform/bus/protocol.h"

namespace quorin::bus {

namespace {

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

/// The handlers of each event kind. Any thread.
class Handlers {
 public:
  void set(const std::string& kind, osmin::EventHandler handler) {
    const std::lock_guard lock(_mutex);
    _handlers[kind] = std::make_shared<osmin::EventHandler>(std::move(handler));
  }
  void run(const std::string& kind, const XpcRef& event) {
    if (const auto handler = find(kind)) (*handler)(event.get(), nullptr);
  }

 private:
  std::shared_ptr<osmin::EventHandler> find(const std::string& kind) {
    const std::lock_guard lock(_mutex);
    const auto found = _handlers.find(kind);
    return found == _handlers.end() ? nullptr : found->second;
  }

  std::mutex _mutex;
  std::map<std::string, std::shared_ptr<osmin::EventHandler>> _handlers;
};

// Events are read on the handlers' own queue: a handler that takes its time holds the reading back,
// and the service sees the connection full.
class BusManager final : public osmin::client::Manager {
 public:
  explicit BusManager(dispatch_queue_t queue)
      : _session(std::make_unique<Session>(
            _thread.loop(),
            [handlers = _handlers, runs = queue != nullptr](
                std::uint64_t /*sequence*/, const std::string& kind, const XpcRef& event) {
              if (runs) handlers->run(kind, event);
            },
            queue)) {
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
    _handlers->set(event, std::move(handler));
  }

  void eventsOff() override {
    _thread.post([this] { _session->eventsOff(); });
  }
  void eventsOn() override {
    _thread.post([this] { _session->eventsOn(); });
  }

 private:
  std::shared_ptr<Handlers> _handlers = std::make_shared<Handlers>();
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
