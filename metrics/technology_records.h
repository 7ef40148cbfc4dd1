#pragma once

#include <vector>

#include "platform/platform.h"

namespace quorin {

// What the multi-section pages show, rebuilt from the stores. Until its metric comes, a dictionary
// holds its fixed keys with empty text, and a list one placeholder entry whose key is the text that
// the page shows.

struct LTE {
  LTE();
  Dictionary SelReselCellInfo;
  List EutraNbrs;
  List RsrpRsrqSinr;
  List TxPower;
  List EutraNbrsMeas;
  List UtraNbrsMeas;
  List GeraNbrsMeas;
  List CAStatusList;
  List SecondaryCellMeasList;
  List MMCommonInfo;
  Value IMSI;  // digits, or bytes that are no IMSI (3GPP TS 24.008, 10.5.1.4)
};

struct UMTS {
  UMTS();
  List rXInfo;
  List TxPower;
  Dictionary SelReselCellInfo;
  List eUtraNbrs;
  List utraNbrs;
  List geraNbrs;
  List eUtraNbrMeas;
  List utraNbrMeas;
  List geraNbrMeas;
};

struct GSM {
  GSM();
  List eUtraNbrMeas;
  List utraNbrMeas;
  List geraNbrMeas;
};

struct Common {
  Common();
  List activeBearer;
  List simContents;
};

/// Where a record's fixed keys stand in the dictionaries of one kind: found once.
class FixedPlaces {
 public:
  /// A copy of the record's dictionary that has each of its keys in their order: with the value of
  /// `latest`, or empty text where that lacks the key.
  [[nodiscard]] Dictionary withFixedKeys(const Dictionary& fixed, const Dictionary& latest);

 private:
  const Literal* _fixed = nullptr;
  const Literal* _latest = nullptr;
  std::vector<std::size_t> _places;
};

}  // namespace quorin
