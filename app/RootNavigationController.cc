#include "app/RootNavigationController.h"

namespace quorin {

namespace {

// The query for the SIM files: the low 16 bits of the trigger ID are their metric tag.
constexpr std::int32_t kSimFilesTriggerRef = 9999;
constexpr std::int32_t kSimFilesTriggerID = 0x7F0013;

}  // namespace

void RootNavigationController::setProperties() {
  _myAppID = "quorin";
  _metricFileName = "zef_test_lte";
  _metricFileType = "deviceconfig";
  _myOsminWrapper = OsminWrapper::sharedInstance();
  _myMetricValidator = MetricValidator::sharedInstance();
}

void RootNavigationController::initWithNavigationBarClass(
    std::optional<std::string> navigationBarClass, std::optional<std::string> toolbarClass) {
  setProperties();
  UINavigationController::initWithNavigationBarClass(std::move(navigationBarClass),
                                                     std::move(toolbarClass));
}

void RootNavigationController::initWithRootViewController(Page root) {
  setProperties();
  UINavigationController::initWithRootViewController(std::move(root));
}

void RootNavigationController::initWithNibName(std::optional<std::string> nibName,
                                               const Bundle* bundle) {
  setProperties();
  UINavigationController::initWithNibName(std::move(nibName), bundle);
}

void RootNavigationController::initWithCoder(const NSCoder& coder) {
  setProperties();
  UINavigationController::initWithCoder(coder);
}

void RootNavigationController::viewDidLoad() {
  UINavigationController::viewDidLoad();
  if (_myOsminWrapper) (void)_myOsminWrapper->removeVantorConfigForAppid(_myAppID);
  const auto path = Bundle::mainBundle().pathForResource(_metricFileName, _metricFileType);
  if (!path) return printLine("Metric Log File path doesnt exist");
  printLine("pushing metric file");
  if (!_myOsminWrapper) fatal();
  if (!_myOsminWrapper->addVantorConfigForAppId(_myAppID, *path)) return;
  if (const auto& wrapper = _myMetricValidator->mySharedOsminInstance()) wrapper->listen();
  printLine("Querying SIM files");
  // The literal application ID and not the property: meant.
  (void)_myOsminWrapper->querySpecificMetric("quorin", kSimFilesTriggerRef, 0, kSimFilesTriggerID,
                                             0, 0);
}

void RootNavigationController::didReceiveMemoryWarning() {
  UINavigationController::didReceiveMemoryWarning();
}

}  // namespace quorin
