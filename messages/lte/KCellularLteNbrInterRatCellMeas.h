#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/EgwErrcNbrGeranMeas.h"
#include "messages/lte/EgwErrcNbrUtraMeas.h"

namespace quorin {

/// UMTS and GSM neighbours measured from LTE.
class KCellularLteNbrInterRatCellMeas final : public Message<KCellularLteNbrInterRatCellMeas> {
  PB_MESSAGE(KCellularLteNbrInterRatCellMeas)
  PB_UINT64  (1, "timestamp",      timestamp,    Timestamp)
  PB_REPEATED(2, "meas_nbr_utra",  measNbrUtra,  MeasNbrUtra,  measNbrUtras,  MeasNbrUtras,  EgwErrcNbrUtraMeas)
  PB_REPEATED(3, "meas_nbr_geran", measNbrGeran, MeasNbrGeran, measNbrGerans, MeasNbrGerans, EgwErrcNbrGeranMeas)
};

}  // namespace quorin
