#include "platform/foundation/Data.h"

#include <algorithm>
#include <cstring>
#include <fstream>

namespace quorin {

namespace {

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

std::uint64_t hashBytes(Bytes bytes) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (std::uint8_t byte : bytes) hash = (hash ^ byte) * 0x100000001b3;
  return hash;
}

Ref<Data> Data::create(Bytes bytes) {
  void* memory = takeMemory(sizeof(Data) + bytes.size() + kReadableBehind);
  Ref<Data> data(new (memory) Data(static_cast<std::uint32_t>(bytes.size())));
  data->fill(bytes);
  return data;
}

void Data::operator delete(Data* data, std::destroying_delete_t /*tag*/) {
  const std::size_t size = sizeof(Data) + data->_length + kReadableBehind;
  data->~Data();
  giveMemory(data, size);
}

bool Data::isEqual(const Object& other) const {
  const auto* data = dynamic_cast<const Data*>(&other);
  return data && std::ranges::equal(data->bytes(), bytes());
}

Ref<String> String::create(std::string_view text) {
  void* memory = takeMemory(sizeof(String) + text.size());
  if (!text.empty())
    std::memcpy(static_cast<char*>(memory) + sizeof(String), text.data(), text.size());
  return Ref<String>(new (memory) String(static_cast<std::uint32_t>(text.size())));
}

String* String::createIn(Block& block, std::string_view text) {
  void* memory = block.take(sizeof(String) + text.size());
  if (!memory) return nullptr;
  auto* string = new (memory) String(static_cast<std::uint32_t>(text.size()), block.first());
  text.copy(reinterpret_cast<char*>(string + 1), text.size());
  return string;
}

void String::operator delete(String* string, std::destroying_delete_t /*tag*/) {
  const std::size_t size = sizeof(String) + string->_length;
  string->~String();
  giveMemory(string, size);
}

bool String::isEqual(const Object& other) const {
  const auto* string = dynamic_cast<const String*>(&other);
  return string && string->text() == text();
}

std::uint64_t String::hash() const {
  return hashBytes({reinterpret_cast<const std::uint8_t*>(content()), _length});
}

std::string hexText(Bytes bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = hexDigit(text[i]);
    const int low = hexDigit(text[i + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
  }
  return bytes;
}

Ref<Data> dataWithContentsOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return nullptr;
  // Block by block: an iterator over the stream would throw where a folder was opened.
  std::vector<std::uint8_t> bytes;
  char block[4096];
  while (file.read(block, sizeof block), file.gcount() > 0)
    bytes.insert(bytes.end(), block, block + file.gcount());
  return file.bad() ? nullptr : make<Data>(std::move(bytes));
}

}  // namespace quorin
