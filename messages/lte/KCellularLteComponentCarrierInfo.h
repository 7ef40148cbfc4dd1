#pragma once

#include "messages/codec/fields.h"

namespace quorin {

/// The primary and up to two secondary component carriers.
class KCellularLteComponentCarrierInfo final : public Message<KCellularLteComponentCarrierInfo> {
  PB_MESSAGE(KCellularLteComponentCarrierInfo)
  PB_UINT64(1, "timestamp",      timestamp,     Timestamp)
  PB_UINT32(2, "pcc_earfcn",     pccEarfcn,     PccEarfcn)
  PB_UINT32(3, "scc0_earfcn",    scc0Earfcn,    Scc0Earfcn)
  PB_UINT32(4, "scc1_earfcn",    scc1Earfcn,    Scc1Earfcn)
  PB_UINT32(5, "pcc_bandwidth",  pccBandwidth,  PccBandwidth)
  PB_UINT32(6, "scc0_bandwidth", scc0Bandwidth, Scc0Bandwidth)
  PB_UINT32(7, "scc1_bandwidth", scc1Bandwidth, Scc1Bandwidth)
};

}  // namespace quorin
