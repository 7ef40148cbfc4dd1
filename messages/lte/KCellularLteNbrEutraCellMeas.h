#pragma once

#include "messages/codec/fields.h"
#include "messages/lte/EgwErrcNbrEutraMeas.h"

namespace quorin {

/// LTE neighbours measured from LTE.
class KCellularLteNbrEutraCellMeas final : public Message<KCellularLteNbrEutraCellMeas> {
  PB_MESSAGE(KCellularLteNbrEutraCellMeas)
  PB_UINT64  (1, "timestamp",      timestamp,    Timestamp)
  PB_REPEATED(2, "meas_nbr_eutra", measNbrEutra, MeasNbrEutra, measNbrEutras, MeasNbrEutras, EgwErrcNbrEutraMeas)
};

}  // namespace quorin
