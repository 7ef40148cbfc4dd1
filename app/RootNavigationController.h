#pragma once

#include "metrics/MetricValidator.h"

namespace quorin {

/// The navigation root: when its view loads, it brings the metric subscription up.
class RootNavigationController : public UINavigationController {
 public:
  [[nodiscard]] const std::string& myAppID() const { return _myAppID; }
  [[nodiscard]] const std::string& metricFileName() const { return _metricFileName; }
  [[nodiscard]] const std::string& metricFileType() const { return _metricFileType; }
  [[nodiscard]] const std::shared_ptr<OsminWrapper>& myOsminWrapper() const {
    return _myOsminWrapper;
  }
  [[nodiscard]] const std::shared_ptr<MetricValidator>& myMetricValidator() const {
    return _myMetricValidator;
  }

  /// Each sets the properties, in their order, before it runs the base's.
  void initWithNavigationBarClass(std::optional<std::string> navigationBarClass,
                                  std::optional<std::string> toolbarClass) override;
  void initWithRootViewController(Page root) override;
  void initWithNibName(std::optional<std::string> nibName, const Bundle* bundle) override;
  void initWithCoder(const NSCoder& coder) override;

  /// Clear, push, listen, query, in this order. Stops where there is no configuration file to push,
  /// and when the push is refused.
  void viewDidLoad() override;
  void didReceiveMemoryWarning() override;

 protected:
  // For what must hold whatever the properties are.
  std::string _myAppID;
  std::shared_ptr<OsminWrapper> _myOsminWrapper;

 private:
  void setProperties();

  std::string _metricFileName;
  std::string _metricFileType;
  std::shared_ptr<MetricValidator> _myMetricValidator;
};

}  // namespace quorin
