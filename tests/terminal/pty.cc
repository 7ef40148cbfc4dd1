#include "tests/terminal/pty.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace quorin::terminal::test {

Pty::Pty(int rows, int columns) : _end(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
  EXPECT_EQ(grantpt(_end), 0);
  EXPECT_EQ(unlockpt(_end), 0);
  _path = ptsname(_end);
  _kept = descriptor();
  resize(rows, columns);
}

Pty::~Pty() {
  close(_kept);
  close(_end);
}

int Pty::descriptor() const { return open(_path.c_str(), O_RDWR | O_NOCTTY); }

void Pty::resize(int rows, int columns) {
  const winsize size{static_cast<unsigned short>(rows), static_cast<unsigned short>(columns), 0, 0};
  EXPECT_EQ(ioctl(_kept, TIOCSWINSZ, &size), 0);
}

void Pty::type(const std::string& keys) {
  EXPECT_EQ(write(_end, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

std::string Pty::written() {
  std::string text;
  std::array<char, 4096> part;
  ssize_t size = 0;
  while ((size = read(_end, part.data(), part.size())) > 0)
    text.append(part.data(), static_cast<std::size_t>(size));
  return text;
}

}  // namespace quorin::terminal::test
