#pragma once

// The ground of the house, and the one header of it that the rest includes.

#include "platform/baseband/EventRecord.h"
#include "platform/baseband/osmin.h"
#include "platform/baseband/xpc.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/queue.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Data.h"
#include "platform/foundation/Dictionary.h"
#include "platform/foundation/InlineVector.h"
#include "platform/foundation/Object.h"
#include "platform/foundation/clock.h"
#include "platform/foundation/fatal.h"
#include "platform/foundation/log.h"
#include "platform/foundation/number.h"
#include "platform/foundation/zone.h"
#include "platform/protocolbuffer/PBCodable.h"
#include "platform/protocolbuffer/PBDataReader.h"
#include "platform/protocolbuffer/PBDataWriter.h"
#include "platform/protocolbuffer/PBRepeated.h"
#include "platform/toolkit/UIApplication.h"
