#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorin {

/// Which row of which section.
struct NSIndexPath {
  std::ptrdiff_t section = 0;
  std::ptrdiff_t row = 0;
  friend bool operator==(const NSIndexPath&, const NSIndexPath&) = default;
};

/// What stands beside a row's texts, never inside them.
struct Annotation {
  std::string unit;           // "dBm"; empty: none
  std::string meaning;        // how the value reads, such as "-97 ≤ RSRP < -96 dBm"; empty: none
  std::string_view clause{};  // where that stands, such as "3GPP TS 36.133, 9.1.4"; empty: nowhere
  friend bool operator==(const Annotation&, const Annotation&) = default;
};

/// Whatever may have caused a segue.
class UIResponder {
 public:
  virtual ~UIResponder() = default;
};

class UILabel {
 public:
  [[nodiscard]] const std::optional<std::string>& text() const { return _text; }
  void setText(std::optional<std::string> text) { _text = std::move(text); }

 private:
  std::optional<std::string> _text;
};

/// The labels that a cell has.
enum class CellStyle { custom, basic, detail };

/// A cell of the interface description, copied for each row that shows it.
struct CellPrototype {
  std::string_view reuseIdentifier;
  CellStyle style = CellStyle::basic;
  std::string_view text{};
};

class UITableViewCell final : public UIResponder {
 public:
  explicit UITableViewCell(const CellPrototype& prototype);

  [[nodiscard]] std::string_view reuseIdentifier() const { return _reuseIdentifier; }
  /// Null where the cell has no such label.
  [[nodiscard]] UILabel* textLabel() { return _textLabel ? &*_textLabel : nullptr; }
  [[nodiscard]] UILabel* detailTextLabel() {
    return _detailTextLabel ? &*_detailTextLabel : nullptr;
  }
  [[nodiscard]] const UILabel* textLabel() const { return _textLabel ? &*_textLabel : nullptr; }
  [[nodiscard]] const UILabel* detailTextLabel() const {
    return _detailTextLabel ? &*_detailTextLabel : nullptr;
  }

 private:
  std::string _reuseIdentifier;
  std::optional<UILabel> _textLabel;
  std::optional<UILabel> _detailTextLabel;
};

using Cell = std::shared_ptr<UITableViewCell>;

/// A page's table: hands out cells and tells the toolkit when to ask the page again. Main thread.
class UITableView {
 public:
  /// A row height: as high as the row's text needs.
  static constexpr double kAutomaticDimension = -1;

  void registerPrototype(const CellPrototype& prototype) { _prototypes.push_back(prototype); }

  /// A cell of this identifier: one that was given back, with its old texts, or a new one.
  /// Fatal when no prototype has the identifier.
  [[nodiscard]] Cell dequeueReusableCellWithIdentifier(std::string_view identifier,
                                                       NSIndexPath indexPath);
  /// Gives a cell that is no longer shown back for reuse.
  void reuse(Cell cell) { _reusable.push_back(std::move(cell)); }

  /// Tells the toolkit that the page's answers may have changed.
  void reloadData() {
    if (_onReload) _onReload();
  }
  void setOnReload(std::function<void()> onReload) { _onReload = std::move(onReload); }

 private:
  std::vector<CellPrototype> _prototypes;
  std::vector<Cell> _reusable;
  std::function<void()> _onReload;
};

}  // namespace quorin
