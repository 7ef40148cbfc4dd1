#include "messages/codec/unrolled.h"
#include "messages/lte/EgwErrcNbrEutraMeas.h"
#include "messages/lte/EgwErrcNbrGeranMeas.h"
#include "messages/lte/EgwErrcNbrUtraMeas.h"
#include "messages/lte/KCellularLteCarrierAggregationStatus.h"
#include "messages/lte/KCellularLteCdrxConfig.h"
#include "messages/lte/KCellularLteComponentCarrierInfo.h"
#include "messages/lte/KCellularLteNbrEutraCellMeas.h"
#include "messages/lte/KCellularLteNbrInterRatCellMeas.h"
#include "messages/lte/KCellularLteRrcState.h"
#include "messages/lte/KCellularLteRsrpRsrqSinr.h"
#include "messages/lte/KCellularLteScellInfo.h"
#include "messages/lte/KCellularLteSecondaryCellMeasurements.h"
#include "messages/lte/KCellularLteSelReselCellInfo.h"
#include "messages/lte/KCellularLteServingCellMeasurement.h"
#include "messages/lte/KCellularLteTxPower.h"
#include "messages/lte/NbrEutra.h"
#include "messages/lte/RsrpRsrqSinr.h"
#include "messages/lte/SccRxMeasurement.h"
#include "messages/lte/SecondaryComponentCarrier.h"

namespace quorin {

template struct Unrolled<EgwErrcNbrEutraMeas>;
template struct Unrolled<EgwErrcNbrGeranMeas>;
template struct Unrolled<EgwErrcNbrUtraMeas>;
template struct Unrolled<KCellularLteCarrierAggregationStatus>;
template struct Unrolled<KCellularLteCdrxConfig>;
template struct Unrolled<KCellularLteComponentCarrierInfo>;
template struct Unrolled<KCellularLteNbrEutraCellMeas>;
template struct Unrolled<KCellularLteNbrInterRatCellMeas>;
template struct Unrolled<KCellularLteRrcState>;
template struct Unrolled<KCellularLteRsrpRsrqSinr>;
template struct Unrolled<KCellularLteScellInfo>;
template struct Unrolled<KCellularLteSecondaryCellMeasurements>;
template struct Unrolled<KCellularLteSelReselCellInfo>;
template struct Unrolled<KCellularLteServingCellMeasurement>;
template struct Unrolled<KCellularLteTxPower>;
template struct Unrolled<NbrEutra>;
template struct Unrolled<RsrpRsrqSinr>;
template struct Unrolled<SccRxMeasurement>;
template struct Unrolled<SecondaryComponentCarrier>;

}  // namespace quorin
