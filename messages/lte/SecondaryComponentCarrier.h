#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/names.h"

namespace quorin {

/// One secondary component carrier: its state, frequencies and levels.
class SecondaryComponentCarrier final : public Message<SecondaryComponentCarrier> {
  PB_MESSAGE(SecondaryComponentCarrier)
  PB_UINT32( 1, "index",        index,       Index)
  PB_ENUM  ( 2, "state",        state,       State, names::SCC_STATE)
  PB_UINT32( 3, "pci",          pci,         Pci)
  PB_UINT32( 4, "dl_earfcn",    dlEarfcn,    DlEarfcn)
  PB_UINT32( 5, "dl_rf_band",   dlRfBand,    DlRfBand)
  PB_UINT32( 6, "dl_bandwidth", dlBandwidth, DlBandwidth)
  PB_BOOL  ( 7, "has_uplink",   hasUplink,   HasUplink)
  PB_UINT32( 8, "ul_earfcn",    ulEarfcn,    UlEarfcn)
  PB_UINT32( 9, "ul_rf_band",   ulRfBand,    UlRfBand)
  PB_UINT32(10, "ul_bandwidth", ulBandwidth, UlBandwidth)
  PB_SINT32(11, "rsrp",         rsrp,        Rsrp)
  PB_SINT32(12, "rsrq",         rsrq,        Rsrq)
  PB_SINT32(13, "snr",          snr,         Snr)
  PB_SINT32(14, "rssi",         rssi,        Rssi)
};

}  // namespace quorin
