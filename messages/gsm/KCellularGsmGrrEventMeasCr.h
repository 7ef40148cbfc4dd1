#pragma once

#include "messages/codec/fields.h"
#include "messages/gsm/GsmNcellMeas.h"
#include "messages/gsm/LteNcellMeas.h"
#include "messages/gsm/UmtsNcellMeas.h"

namespace quorin {

/// GSM, UMTS and LTE neighbours measured from GSM for cell reselection.
class KCellularGsmGrrEventMeasCr final : public Message<KCellularGsmGrrEventMeasCr> {
  PB_MESSAGE(KCellularGsmGrrEventMeasCr)
  PB_UINT64  (1, "timestamp",       timestamp,     Timestamp)
  PB_REPEATED(2, "gsm_ncell_meas",  gsmNcellMeas,  GsmNcellMeas,  gsmNcellMeas,  GsmNcellMeas,  GsmNcellMeas)
  PB_REPEATED(3, "umts_ncell_meas", umtsNcellMeas, UmtsNcellMeas, umtsNcellMeas, UmtsNcellMeas, UmtsNcellMeas)
  PB_REPEATED(4, "lte_ncell_meas",  lteNcellMeas,  LteNcellMeas,  lteNcellMeas,  LteNcellMeas,  LteNcellMeas)
};

}  // namespace quorin
