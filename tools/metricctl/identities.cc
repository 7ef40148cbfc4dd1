#include "tools/metricctl/identities.h"

#include <algorithm>
#include <array>

#include "messages/nas/ElementaryFile.h"
#include "metrics/conversions.h"

namespace quorin::metricctl {

namespace {

// Half-octets of a card's or an identity's digits: the low one first (3GPP TS 24.008 10.5.1.4, TS
// 31.102 4.2.2, ETSI TS 102 221 13.2).
std::uint8_t halfAt(const ByteString& bytes, std::size_t index) {
  return static_cast<std::uint8_t>(bytes[index / 2] >> (index % 2 * 4) & 15);
}

void setDigits(ByteString& bytes, std::size_t first, std::string_view digits) {
  for (const char digit : digits) {
    const unsigned shift = first % 2 * 4;
    std::uint8_t& octet = bytes[first++ / 2];
    octet = static_cast<std::uint8_t>((octet & ~(15U << shift)) | static_cast<unsigned>(digit - '0')
                                                                      << shift);
  }
}

/// The number's last `count` digits, filled up with zeros.
std::string digitsOf(std::uint64_t number, std::size_t count) {
  const std::string text = std::string(count, '0') + std::to_string(number);
  return text.substr(text.size() - count);
}

/// The number's lowest bytes, the highest first.
void setNumber(std::span<std::uint8_t> bytes, std::uint64_t number) {
  for (std::size_t i = bytes.size(); i > 0; number >>= 8)
    bytes[--i] = static_cast<std::uint8_t>(number);
}

std::uint64_t numberIn(Bytes bytes) {
  std::uint64_t number = 0;
  for (const std::uint8_t byte : bytes) number = number << 8 | byte;
  return number;
}

bool areAll(Bytes bytes, std::uint8_t value) {
  return std::ranges::all_of(bytes, [value](std::uint8_t byte) { return byte == value; });
}

ByteString bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

std::vector<std::string> noDigits(const AnyMessage& /*holder*/, const ByteString& /*value*/) {
  return {};
}

// There are as many numbers of a length as values, so that the wrap at the last one is no clash.
ByteString redactedBytes(StandIns& standIns, ByteString value) {
  setNumber(value, standIns.numberOf("bytes " + std::to_string(value.size()), value));
  return value;
}

/// Countries whose networks all have codes of three digits (ITU-T E.212); of the others the third
/// digit may be the subscriber's.
constexpr std::string_view kThreeDigitCountries[] = {"302", "310", "311", "312", "313", "314",
                                                     "315", "316", "334", "338", "342", "344",
                                                     "346", "348", "365", "708", "722", "732"};

/// The digits of a mobile identity that is an IMSI with a subscriber number; empty: it is none.
std::string imsiOf(const ByteString& identity) {
  const Value digits = imsiDigits(Value(make<Data>(identity)));
  if (digits.kind() != Value::Kind::text) return {};
  std::string text(digits.text());
  return text.size() > 6 ? text : std::string();
}

std::size_t networkDigits(std::string_view imsi) {
  return std::ranges::find(kThreeDigitCountries, imsi.substr(0, 3)) ==
                 std::end(kThreeDigitCountries)
             ? 5
             : 6;
}

ByteString redactedIdentity(StandIns& standIns, const AnyMessage& /*holder*/, ByteString value) {
  const std::string imsi = imsiOf(value);
  if (imsi.empty()) return redactedBytes(standIns, std::move(value));
  const std::size_t network = networkDigits(imsi);
  const std::string kind = "imsi " + imsi.substr(0, network) + " " + std::to_string(imsi.size());
  const std::uint64_t number = standIns.numberOf(kind, bytesOf(imsi));
  setDigits(value, 1 + network, digitsOf(number, imsi.size() - network));
  return value;
}

std::vector<std::string> identityDigits(const AnyMessage& /*holder*/, const ByteString& value) {
  const std::string imsi = imsiOf(value);
  if (imsi.empty()) return {};
  return {imsi, imsi.substr(networkDigits(imsi))};
}

/// EF IMSI's mobile identity; empty: the file holds no IMSI.
ByteString identityOfFile(const ByteString& file) {
  const std::size_t length = file.empty() ? 0 : file[0];
  if (length == 0 || length >= file.size() || !areAll(Bytes(file).subspan(1 + length), 0xFF))
    return {};
  ByteString identity(file.begin() + 1, file.begin() + 1 + static_cast<std::ptrdiff_t>(length));
  return imsiOf(identity).empty() ? ByteString() : identity;
}

ByteString redactedImsiFile(StandIns& standIns, const AnyMessage& holder, ByteString value) {
  const ByteString identity = identityOfFile(value);
  if (identity.empty()) return redactedBytes(standIns, std::move(value));
  std::ranges::copy(redactedIdentity(standIns, holder, identity), value.begin() + 1);
  return value;
}

std::vector<std::string> imsiFileDigits(const AnyMessage& holder, const ByteString& value) {
  return identityDigits(holder, identityOfFile(value));
}

/// EF ICCID's digits, with the check digit; empty: the file holds none (ITU-T E.118).
std::string iccidOf(const ByteString& file) {
  std::string digits;
  for (std::size_t i = 0; i < 2 * file.size(); ++i) digits += "0123456789abcdef"[halfAt(file, i)];
  digits.erase(digits.find_last_not_of('f') + 1);
  const bool isOne = file.size() == 10 && digits.size() >= 18 && digits.starts_with("89") &&
                     digits.find_first_not_of("0123456789") == std::string::npos;
  return isOne ? digits : std::string();
}

char checkDigit(std::string_view digits) {
  int sum = 0;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const int digit = digits[digits.size() - 1 - i] - '0';
    sum += i % 2 == 1 ? digit : digit < 5 ? 2 * digit : 2 * digit - 9;
  }
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

ByteString redactedIccid(StandIns& standIns, const AnyMessage& /*holder*/, ByteString value) {
  const std::string iccid = iccidOf(value);
  if (iccid.empty()) return redactedBytes(standIns, std::move(value));
  const std::uint64_t number =
      standIns.numberOf("iccid " + std::to_string(iccid.size()), bytesOf(iccid));
  const std::string account = "89" + digitsOf(number, iccid.size() - 3);
  setDigits(value, 0, account + checkDigit(account));
  return value;
}

std::vector<std::string> iccidDigits(const AnyMessage& /*holder*/, const ByteString& value) {
  const std::string iccid = iccidOf(value);
  if (iccid.empty()) return {};
  return {iccid, iccid.substr(2)};
}

ByteString redactedFileOfAnyKind(StandIns& standIns, const AnyMessage& /*holder*/,
                                 ByteString value) {
  return redactedBytes(standIns, std::move(value));
}

/// Elementary files whose coding is kept (3GPP TS 31.102); of the others the length is.
struct FileRow {
  std::uint32_t id;
  IdentityCoding coding;
};

constexpr FileRow kFiles[] = {
    {0x6F07, {"", redactedImsiFile, imsiFileDigits}},
    {0x2FE2, {"", redactedIccid, iccidDigits}},
};
constexpr IdentityCoding kAnyFile{"", redactedFileOfAnyKind, noDigits};

const IdentityCoding& codingOfFile(const AnyMessage& holder) {
  const auto& file = static_cast<const ElementaryFile&>(holder);
  const auto* row = std::ranges::find(kFiles, file.efId(), &FileRow::id);
  return file.hasEfId() && row != std::end(kFiles) ? row->coding : kAnyFile;
}

ByteString redactedFile(StandIns& standIns, const AnyMessage& holder, ByteString value) {
  return codingOfFile(holder).redacted(standIns, holder, std::move(value));
}

std::vector<std::string> fileDigits(const AnyMessage& holder, const ByteString& value) {
  return codingOfFile(holder).digits(holder, value);
}

// `kept`: bits of the first byte that stay. All ones say that there is no TMSI (3GPP
// TS 23.003 2.4).
template <std::uint8_t kept>
ByteString redactedTmsi(StandIns& standIns, const AnyMessage& /*holder*/, ByteString value) {
  if (areAll(value, 0xFF)) return value;
  const auto highest = static_cast<std::uint8_t>(value[0] & kept);
  setNumber(value, standIns.numberOf("tmsi " + std::to_string(highest), value));
  value[0] = static_cast<std::uint8_t>((value[0] & ~kept) | highest);
  return value;
}

std::vector<std::string> tmsiDigits(const AnyMessage& /*holder*/, const ByteString& value) {
  return {std::to_string(numberIn(value))};
}

/// What stands before a number that takes the place of an address of this length.
struct AddressRow {
  std::size_t length;
  std::array<std::uint8_t, 4> prefix;
  std::size_t prefixLength;
};

constexpr AddressRow kAddresses[] = {
    {4, {10}, 1},                       // private (RFC 1918)
    {16, {0x20, 0x01, 0x0D, 0xB8}, 4},  // documentation (RFC 3849)
};

void redactAddress(StandIns& standIns, std::span<std::uint8_t> address) {
  const auto* row = std::ranges::find(kAddresses, address.size(), &AddressRow::length);
  if (areAll(address, 0)) return;
  const std::uint64_t number =
      standIns.numberOf("address " + std::to_string(row->length), {address.begin(), address.end()});
  std::ranges::fill(address, std::uint8_t{0});
  setNumber(address.subspan(row->prefixLength), number);
  std::copy_n(row->prefix.begin(), row->prefixLength, address.begin());
}

// IPv4, IPv6, or the one behind the other.
ByteString redactedAddress(StandIns& standIns, const AnyMessage& /*holder*/, ByteString value) {
  const std::span<std::uint8_t> bytes(value);
  const bool isIPv4 = value.size() == 4 || value.size() == 20;
  if (isIPv4) redactAddress(standIns, bytes.first(4));
  if (value.size() == 16 || value.size() == 20) redactAddress(standIns, bytes.last(16));
  if (isIPv4 || value.size() == 16) return value;
  return redactedBytes(standIns, std::move(value));
}

/// Access points that many networks have and that name nobody.
constexpr std::string_view kCommonAccessPoints[] = {"ims", "internet", "mms", "sos", "xcap"};

ByteString redactedAccessPoint(StandIns& standIns, const AnyMessage& /*holder*/, ByteString value) {
  const std::string name(value.begin(), value.end());
  if (name.empty() || std::ranges::find(kCommonAccessPoints, name) != std::end(kCommonAccessPoints))
    return value;
  return bytesOf("apn-" + std::to_string(standIns.numberOf("apn", value)) + ".invalid");
}

ByteString redactedCall(StandIns& standIns, const AnyMessage& /*holder*/, ByteString value) {
  if (value.empty()) return value;
  return bytesOf("call-" + std::to_string(standIns.numberOf("call", value)));
}

// A network, and so a place; but what is none has no reason to stay.
ByteString redactedNetwork(StandIns& standIns, const AnyMessage& /*holder*/, ByteString value) {
  return value.size() == 3 ? value : redactedBytes(standIns, std::move(value));
}

constexpr IdentityCoding kImsi{
    "IMSI: its network stays, the subscriber is a number; other bytes: a number of their length",
    redactedIdentity, identityDigits};
constexpr IdentityCoding kFile{
    "EF IMSI: as the IMSI; EF ICCID: 89, a number and the check digit; other files: a number of "
    "their length",
    redactedFile, fileDigits};
constexpr IdentityCoding kTmsi{
    "a number below the two bits that tell whose it is; FFFFFFFF, which is none, stays",
    redactedTmsi<0xC0>, tmsiDigits};
constexpr IdentityCoding kMTmsi{"a number; FFFFFFFF, which is none, stays", redactedTmsi<0>,
                                tmsiDigits};
constexpr IdentityCoding kAddress{
    "IPv4: a number in 10.0.0.0/8; IPv6: in 2001:db8::/32; all zeros stay; other bytes: a number "
    "of their length",
    redactedAddress, noDigits};
constexpr IdentityCoding kAccessPoint{"apn-1.invalid; ims, internet, mms, sos and xcap stay",
                                      redactedAccessPoint, noDigits};
constexpr IdentityCoding kCall{"call-1", redactedCall, noDigits};
constexpr IdentityCoding kNetwork{"three bytes stay; others: a number of their length",
                                  redactedNetwork, noDigits};

constexpr IdentityRow kIdentities[] = {
    {"KCellularLteRsrpRsrqSinr", "call_id", &kCall},
    {"KCellularMmCommonInfo", "imsi", &kImsi},
    {"Plmn", "encoded_plmn", &kNetwork},
    {"KCellularLocationAreaId", "encoded_plmn", &kNetwork},
    {"KCellularTrackingAreaId", "encoded_plmn", &kNetwork},
    {"RoutingAreaId", "encoded_plmn", &kNetwork},
    {"KCellularMmContext", "tmsi", &kTmsi},
    {"KCellularGmmContext", "p_tmsi", &kTmsi},
    {"Guti", "m_tmsi", &kMTmsi},
    {"BearerContext", "apn", &kAccessPoint},
    {"BearerContext", "pdp_addr", &kAddress},
    {"BearerContext", "primary_dns_addr", &kAddress},
    {"BearerContext", "secondary_dns_addr", &kAddress},
    {"ElementaryFile", "content", &kFile},
};

constexpr PlaceRow kPlaces[] = {
    {"mcc", "country"},
    {"sel_plmn_mcc", "country"},
    {"mnc", "network"},
    {"sel_plmn_mnc", "network"},
    {"encoded_plmn", "network"},
    {"lac", "location area"},
    {"rac", "routing area"},
    {"tac", "tracking area"},
    {"tracking_area_code", "tracking area"},
    {"cell_id", "cell"},
    {"ci", "cell"},
    {"mmegi", "group of MMEs"},
    {"mmec", "MME"},
};

// An identity's value as bytes, and back. False: the field is absent.
bool takeOut(const AnyMessage& message, const Field& field, ByteString& value) {
  switch (field.kind) {
    case Kind::uint32:
      value.resize(4);
      setNumber(value, field.in<std::uint32_t>(message));
      return message.has(field.number);
    case Kind::bytes: {
      const auto& data = field.in<Ref<Data>>(message);
      if (data) value.assign(data->bytes().begin(), data->bytes().end());
      return static_cast<bool>(data);
    }
    case Kind::string: {
      const auto& text = field.in<Ref<String>>(message);
      if (text) value = bytesOf(text->text());
      return static_cast<bool>(text);
    }
    default: fatal();
  }
}

void putIn(AnyMessage& message, const Field& field, const ByteString& value) {
  if (field.kind == Kind::uint32)
    field.in<std::uint32_t>(message) = static_cast<std::uint32_t>(numberIn(value));
  else if (field.kind == Kind::bytes)
    field.in<Ref<Data>>(message) = make<Data>(value);
  else
    field.in<Ref<String>>(message) = make<String>(std::string(value.begin(), value.end()));
}

void redactFields(AnyMessage& message, const std::string& path, StandIns& standIns,
                  std::vector<Replaced>& replaced) {
  for (const Field& field : message.table().fields) {
    const std::string name = path + std::string(field.key);
    if (field.kind == Kind::message) {
      if (const auto& nested = field.in<Ref<AnyMessage>>(message))
        redactFields(*nested, name + ".", standIns, replaced);
    } else if (field.kind == Kind::repeated) {
      if (const auto& array = field.in<Ref<MessageArray>>(message))
        for (const auto& element : array->elements)
          redactFields(*element, name + ".", standIns, replaced);
    }
    const IdentityRow* row = identityRow(message.table().name, field.key);
    ByteString value;
    if (!row || !takeOut(message, field, value)) continue;
    const ByteString standIn = row->coding->redacted(standIns, message, value);
    if (standIn == value) continue;
    replaced.push_back({name, value, row->coding->digits(message, value)});
    putIn(message, field, standIn);
  }
}

}  // namespace

std::uint64_t StandIns::numberOf(const std::string& kind, const ByteString& value) {
  auto& numbers = _numbers[kind];
  return numbers.try_emplace(value, numbers.size() + 1).first->second;
}

std::span<const IdentityRow> identityRows() { return kIdentities; }

const IdentityRow* identityRow(std::string_view messageClass, std::string_view key) {
  const auto* row = std::ranges::find_if(kIdentities, [&](const IdentityRow& identity) {
    return identity.messageClass == messageClass && identity.key == key;
  });
  return row == std::end(kIdentities) ? nullptr : row;
}

std::vector<Replaced> redactMessage(AnyMessage& message, StandIns& standIns) {
  std::vector<Replaced> replaced;
  redactFields(message, "", standIns, replaced);
  return replaced;
}

std::span<const PlaceRow> placeRows() { return kPlaces; }

}  // namespace quorin::metricctl
