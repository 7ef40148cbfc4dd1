#include "messages/codec/unrolled.h"
#include "messages/nas/BearerContext.h"
#include "messages/nas/ElementaryFile.h"
#include "messages/nas/Guti.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularEmmContext.h"
#include "messages/nas/KCellularGmmContext.h"
#include "messages/nas/KCellularLocationAreaId.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/nas/KCellularMmContext.h"
#include "messages/nas/KCellularSimCardFiles.h"
#include "messages/nas/KCellularTrackingAreaId.h"
#include "messages/nas/Plmn.h"
#include "messages/nas/RoutingAreaId.h"

namespace quorin {

template struct Unrolled<BearerContext>;
template struct Unrolled<ElementaryFile>;
template struct Unrolled<Guti>;
template struct Unrolled<KCellularActivatedBearerContexts>;
template struct Unrolled<KCellularEmmContext>;
template struct Unrolled<KCellularGmmContext>;
template struct Unrolled<KCellularLocationAreaId>;
template struct Unrolled<KCellularMmCommonInfo>;
template struct Unrolled<KCellularMmContext>;
template struct Unrolled<KCellularSimCardFiles>;
template struct Unrolled<KCellularTrackingAreaId>;
template struct Unrolled<Plmn>;
template struct Unrolled<RoutingAreaId>;

}  // namespace quorin
