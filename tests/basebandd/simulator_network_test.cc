#include <algorithm>
#include <optional>
#include <set>

#include "messages/lte/KCellularLteCdrxConfig.h"
#include "messages/nas/KCellularActivatedBearerContexts.h"
#include "messages/nas/KCellularGmmContext.h"
#include "messages/nas/KCellularMmCommonInfo.h"
#include "messages/nas/KCellularMmContext.h"
#include "messages/nas/KCellularSimCardFiles.h"
#include "tests/basebandd/drive_log.h"

// Connection, registration, carriers, bearers and card of the simulated modem, read from what comes
// out of the source alone.

namespace quorin::test {
namespace {

constexpr std::int32_t kConnected = valueOf(names::KLTE_RRC_STATE, "KLTE_RRC_STATE_CONNECTED");
constexpr std::int32_t kDeconfigured = valueOf(names::SCC_STATE, "SCC_STATE_DECONFIGURED");
constexpr std::int32_t kActivated = valueOf(names::SCC_STATE, "SCC_STATE_ACTIVATED");
constexpr std::uint32_t kMegahertzOfCode[] = {1, 3, 5, 10, 15, 20};

// (f)
TEST(SimulatedNetwork, DrxIsConfiguredOnlyWhileConnectedAndItsCyclesFitIntoEachOther) {
  std::size_t configured = 0;
  std::size_t released = 0;
  walk(hourOfDrive(), [&](const LoggedMetric& metric, const Picture& before) {
    if (metric.id != K_LTE_CDRX_CONFIG) return;
    const auto drx = decodedAs<KCellularLteCdrxConfig>(metric.payload);
    if (drx->cdrxConfigStatus() == 0) {
      EXPECT_FALSE(drx->hasLongDrxCycleMs());
      ++released;
      return;
    }
    ++configured;
    EXPECT_EQ(drx->rrcState(), kConnected);
    EXPECT_EQ(before.lteState(), kConnected);
    ASSERT_GT(drx->shortDrxCycleMs(), 0u);
    EXPECT_LE(drx->onDurationMs(), drx->shortDrxCycleMs());
    EXPECT_LE(drx->onDurationMs(), drx->longDrxCycleMs());
    EXPECT_EQ(drx->longDrxCycleMs() % drx->shortDrxCycleMs(), 0u);
  });
  EXPECT_GT(configured, 20u);
  EXPECT_GT(released, 20u);
  walkMoments(hourOfDrive(), [&](std::int64_t t, const Picture& picture) {
    if (!picture.has(K_LTE_CDRX_CONFIG) || !isOnLte(picture)) return;
    if (picture.lteState() == kConnected) return;
    EXPECT_EQ(picture.latest<KCellularLteCdrxConfig>(K_LTE_CDRX_CONFIG)->cdrxConfigStatus(), 0u)
        << t;
  });
}

bool isListed(const Ref<KCellularEmmContext>& context, std::uint32_t tac) {
  for (std::size_t i = 0; i < context->taiListsCount(); ++i)
    if (context->taiListAtIndex(i)->tac() == tac) return true;
  return false;
}

// (g)
TEST(SimulatedNetwork, EachCellHasOneTrackingArea) {
  std::map<std::uint32_t, std::uint32_t> areas;
  for (const LoggedMetric& metric : hourOfDrive()) {
    if (metric.id != K_LTE_SCELL_INFO) continue;
    const auto cell = decodedAs<KCellularLteScellInfo>(metric.payload);
    EXPECT_EQ(areas.try_emplace(cell->cellId(), cell->trackingAreaCode()).first->second,
              cell->trackingAreaCode());
  }
  EXPECT_GT(areas.size(), 10u);
}

// (g)
TEST(SimulatedNetwork, ATrackingAreaUpdateComesOnlyOutsideTheListAndAloneRenewsTheIdentity) {
  const std::int32_t inProgress =
      valueOf(names::KREG_STATUS, "KREG_STATUS_REGISTRATION_IN_PROGRESS");
  const std::int32_t normal = valueOf(names::KREG_STATUS, "KREG_STATUS_NORMAL_SERVICE");
  const std::int32_t update = valueOf(names::EMM_PROC, "EMM_PROC_TAU");
  std::size_t updates = 0;
  std::size_t renewals = 0;
  std::size_t refusals = 0;
  Ref<KCellularEmmContext> last;
  walk(hourOfDrive(), [&](const LoggedMetric& metric, const Picture& before) {
    if (metric.id != K_LTE_EMM_CTXT) return;
    const auto context = decodedAs<KCellularEmmContext>(metric.payload);
    const std::uint32_t tac = before.lteCell()->trackingAreaCode();
    const bool begins =
        context->regStatus() == inProgress && (!last || last->regStatus() != inProgress);
    if (begins) {
      EXPECT_FALSE(isListed(context, tac)) << metric.t;
      EXPECT_EQ(context->regProc() == update, context->taiListsCount() > 0) << metric.t;
      updates += context->regProc() == update;
    }
    if (last && last->regStatus() == inProgress && context->regStatus() == normal) {
      EXPECT_TRUE(isListed(context, tac)) << metric.t;
    }
    refusals += context->rejectCause() != 0;
    if (last && last->hasGuti() && context->hasGuti() &&
        last->guti()->mTmsi() != context->guti()->mTmsi()) {
      ++renewals;
      EXPECT_EQ(last->regStatus(), inProgress) << metric.t;
      EXPECT_EQ(context->regStatus(), normal) << metric.t;
    }
    if (context->hasGuti()) {
      EXPECT_EQ(context->guti()->mTmsi() >> 30, 3u);
    }
    last = context;
  });
  EXPECT_GT(updates, 1u);
  EXPECT_GT(renewals, 0u);
  EXPECT_LT(renewals, updates + 1);
  EXPECT_GT(refusals, 0u);
}

// (g)
TEST(SimulatedNetwork, NobodyStaysInNormalServiceOutsideTheList) {
  const std::int32_t normal = valueOf(names::KREG_STATUS, "KREG_STATUS_NORMAL_SERVICE");
  std::uint64_t inCellSince = 0;
  walkMoments(hourOfDrive(), [&](std::int64_t t, const Picture& picture) {
    if (!isOnLte(picture) || !picture.has(K_LTE_EMM_CTXT)) return;
    const auto cell = picture.lteCell();
    inCellSince = std::max(inCellSince, cell->timestamp());
    if (static_cast<std::uint64_t>(kDriveStart + t) < inCellSince + 1000) return;
    const auto context = picture.latest<KCellularEmmContext>(K_LTE_EMM_CTXT);
    if (context->regStatus() != normal) return;
    EXPECT_TRUE(isListed(context, cell->trackingAreaCode())) << t;
  });
}

TEST(SimulatedNetwork, ARefusedAreaIsForbiddenAndLeftForGood) {
  std::optional<std::int64_t> forbiddenAt;
  std::set<std::uint32_t> forbidden;
  for (const LoggedMetric& metric : hourOfDrive()) {
    if (metric.id == K_CELLULAR_MM_INFO) {
      const auto common = decodedAs<KCellularMmCommonInfo>(metric.payload);
      for (std::size_t i = 0; i < common->roamingFtaiListsCount(); ++i)
        forbidden.insert(common->roamingFtaiListAtIndex(i)->tac());
      if (!forbidden.empty() && !forbiddenAt) forbiddenAt = metric.t;
    } else if (metric.id == K_LTE_SCELL_INFO) {
      const auto cell = decodedAs<KCellularLteScellInfo>(metric.payload);
      EXPECT_FALSE(forbidden.contains(cell->trackingAreaCode())) << metric.t;
    }
  }
  EXPECT_TRUE(forbiddenAt);
}

TEST(SimulatedNetwork, TheOlderTechnologiesRegisterInTheAreaOfTheirCell) {
  std::set<std::uint32_t> areas;
  const std::int32_t normal = valueOf(names::KREG_STATUS, "KREG_STATUS_NORMAL_SERVICE");
  walkMoments(hourOfDrive(), [&](std::int64_t t, const Picture& picture) {
    if (!picture.has(K_CELLULAR_GMM_CTXT)) return;
    const auto packet = picture.latest<KCellularGmmContext>(K_CELLULAR_GMM_CTXT);
    if (packet->timestamp() != static_cast<std::uint64_t>(kDriveStart + t)) return;
    const auto circuit = picture.latest<KCellularMmContext>(K_CELLULAR_MM_CTXT);
    if (packet->regStatus() != normal) return;
    ASSERT_TRUE(packet->hasRai());
    EXPECT_EQ(packet->rai()->lac(), circuit->lai()->lac()) << t;
    EXPECT_EQ(packet->pTmsi() >> 30, 3u);
    EXPECT_NE(circuit->tmsi() >> 30, 3u);
    areas.insert(packet->rai()->lac());
  });
  EXPECT_GE(areas.size(), 2u);
}

// (h)
TEST(SimulatedNetwork, SecondaryCarriersAreConfiguredBeforeTheyAreActivatedAndNoneIsInIdle) {
  std::map<std::uint32_t, std::int32_t> states;
  std::set<std::pair<std::int32_t, std::int32_t>> moves;
  walk(hourOfDrive(), [&](const LoggedMetric& metric, const Picture& before) {
    if (metric.id != K_LTE_CA_STATUS) return;
    const auto status = decodedAs<KCellularLteCarrierAggregationStatus>(metric.payload);
    if (before.lteState() != kConnected) {
      EXPECT_EQ(status->sccListsCount(), 0u) << metric.t;
    }
    std::map<std::uint32_t, std::int32_t> now;
    for (std::size_t i = 0; i < status->sccListsCount(); ++i) {
      const auto row = status->sccListAtIndex(i);
      now[row->index()] = row->state();
      EXPECT_EQ(row->hasPci(), row->state() != kDeconfigured);
    }
    for (const std::uint32_t index : {1u, 2u})
      if (states[index] != now[index]) {
        moves.insert({states[index], now[index]});
        EXPECT_FALSE(states[index] == kDeconfigured && now[index] == kActivated) << metric.t;
      }
    states = now;
  });
  EXPECT_TRUE(moves.contains({0, 1}));
  EXPECT_TRUE(moves.contains({1, 2}));
  EXPECT_TRUE(moves.contains({2, 1}));
  EXPECT_TRUE(moves.contains({1, 0}));
}

// (h)
TEST(SimulatedNetwork, ComponentCarriersAreThoseOfTheAggregation) {
  std::size_t aggregated = 0;
  walkMoments(hourOfDrive(), [&](std::int64_t t, const Picture& picture) {
    if (!isOnLte(picture) || !picture.has(K_LTE_CA_STATUS)) return;
    const auto cell = picture.lteCell();
    const auto status = picture.latest<KCellularLteCarrierAggregationStatus>(K_LTE_CA_STATUS);
    const auto components = picture.latest<KCellularLteComponentCarrierInfo>(K_LTE_COMPCARR_INFO);
    std::map<std::uint32_t, Ref<SecondaryComponentCarrier>> configured;
    for (std::size_t i = 0; i < status->sccListsCount(); ++i)
      if (status->sccListAtIndex(i)->state() != kDeconfigured)
        configured[status->sccListAtIndex(i)->index()] = status->sccListAtIndex(i);
    EXPECT_EQ(components->hasScc0Earfcn(), configured.contains(1)) << t;
    EXPECT_EQ(components->hasScc1Earfcn(), configured.contains(2)) << t;
    if (picture.lteState() != kConnected) {
      EXPECT_TRUE(configured.empty()) << t;
    }
    for (const auto& [index, row] : configured) {
      EXPECT_EQ(row->dlEarfcn(), index == 1 ? components->scc0Earfcn() : components->scc1Earfcn());
      EXPECT_EQ(kMegahertzOfCode[row->dlBandwidth()],
                index == 1 ? components->scc0Bandwidth() : components->scc1Bandwidth());
      EXPECT_NE(row->dlEarfcn(), cell->dlFreq()) << t;
      ++aggregated;
    }
  });
  EXPECT_GT(aggregated, 100u);
}

TEST(SimulatedNetwork, BearersGoUpAndDownWithAddressesOfTheirKind) {
  const std::map<std::int32_t, std::size_t> lengths = {
      {valueOf(names::PDP_TYPE, "PDP_TYPE_IPv4"), 4},
      {valueOf(names::PDP_TYPE, "PDP_TYPE_IPv6"), 16}};
  std::set<std::int32_t> types;
  std::set<std::uint32_t> counts;
  std::map<std::string, std::set<std::string>> addresses;
  for (const LoggedMetric& metric : hourOfDrive()) {
    if (metric.id != K_CELLULAR_ACTIVE_BEARER) continue;
    const auto contexts = decodedAs<KCellularActivatedBearerContexts>(metric.payload);
    EXPECT_EQ(contexts->bearerContextCount(), contexts->bearerContextsCount());
    counts.insert(contexts->bearerContextCount());
    for (std::size_t i = 0; i < contexts->bearerContextsCount(); ++i) {
      const auto row = contexts->bearerContextsAtIndex(i);
      types.insert(row->pdpType());
      ASSERT_TRUE(lengths.contains(row->pdpType()));
      EXPECT_EQ(row->pdpAddr()->length(), lengths.at(row->pdpType()));
      EXPECT_EQ(row->primaryDnsAddr()->length(), lengths.at(row->primaryDnsType()));
      EXPECT_GE(row->nsapi(), 5u);
      EXPECT_LE(row->nsapi(), 15u);
      addresses[std::string(row->apn()->text())].insert(hexText(row->pdpAddr()->bytes()));
    }
  }
  EXPECT_EQ(types.size(), 2u);
  EXPECT_TRUE(counts.contains(0));
  EXPECT_TRUE(counts.contains(2));
  EXPECT_TRUE(counts.contains(3));
  EXPECT_GT(addresses["ims"].size(), 1u);
}

std::string swappedDigits(Bytes bytes) {
  std::string digits;
  for (const std::uint8_t byte : bytes) {
    digits += hexText(Bytes(&byte, 1))[1];
    digits += hexText(Bytes(&byte, 1))[0];
  }
  return digits;
}

TEST(SimulatedNetwork, TheCardsFilesAreCodedAsACardCodesThem) {
  std::map<std::uint32_t, Ref<Data>> files;
  Ref<KCellularMmCommonInfo> common;
  for (const LoggedMetric& metric : hourOfDrive()) {
    if (metric.id == K_CELLULAR_MM_INFO) common = decodedAs<KCellularMmCommonInfo>(metric.payload);
    if (metric.id != K_SIM_FILE_INFO) continue;
    const auto card = decodedAs<KCellularSimCardFiles>(metric.payload);
    for (std::size_t i = 0; i < card->efListsCount(); ++i)
      files[card->efListAtIndex(i)->efId()] = card->efListAtIndex(i)->content();
  }
  ASSERT_EQ(files.size(), 3u);
  // TS 31.102 4.2.2: the length, then parity and digits.
  const Bytes imsi = files[0x6F07]->bytes();
  ASSERT_EQ(imsi.size(), 9u);
  EXPECT_EQ(imsi[0], 8);
  EXPECT_EQ(imsi[1] & 0x0F, 0x09);
  EXPECT_EQ(swappedDigits(imsi.subspan(1)).substr(1), "001010123456789");
  EXPECT_EQ(hexText(common->imsi()->bytes()), hexText(imsi.subspan(1)));
  // ITU-T E.118: digits in swapped halves, the last one a Luhn check digit.
  ASSERT_EQ(files[0x2FE2]->length(), 10u);
  const std::string iccid = swappedDigits(files[0x2FE2]->bytes());
  EXPECT_EQ(iccid.substr(0, 2), "89");
  int sum = 0;
  for (std::size_t i = 0; i < iccid.size(); ++i) {
    const int digit = (iccid[i] - '0') * (i % 2 == 0 ? 2 : 1);
    sum += digit > 9 ? digit - 9 : digit;
  }
  EXPECT_EQ(sum % 10, 0);
  EXPECT_GE(files[0x6F3E]->length(), 1u);
}

}  // namespace
}  // namespace quorin::test
