#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/SecondaryComponentCarrier.h"

namespace quorin {

/// The secondary component carriers that the network configured.
class KCellularLteCarrierAggregationStatus final : public Message<KCellularLteCarrierAggregationStatus> {
  PB_MESSAGE(KCellularLteCarrierAggregationStatus)
  PB_UINT64  (1, "timestamp", timestamp, Timestamp)
  PB_REPEATED(2, "scc_list",  sccList,   SccList, sccLists, SccLists, SecondaryComponentCarrier)
};

}  // namespace quorin
