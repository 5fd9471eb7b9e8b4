// The table of links with what the analysis found; the frequency is changed in place.
#pragma once

#include <functional>
#include <optional>

#include "analysis/link_analysis.h"
#include "desktop/id_table_model.h"
#include "desktop/shown_values.h"
#include "planning/plan.h"

namespace zel::host {

class LinkModel final : public IdTableModel<LinkId, Link> {
 public:
  enum Column {
    kFrom,
    kTo,
    kDistance,
    kBearing,
    kFrequency,
    kFreeSpace,
    kModeled,
    kClearance,
    kWorstAt,
    kWorstGround,
    kVerdict,
    kColumns
  };

  // Both must outlive the model.
  LinkModel(const Plan& plan, const LinkAnalysis& analysis, QObject* parent = nullptr)
      : IdTableModel(plan.links, parent), plan_(plan), analysis_(analysis) {}

  void setUnits(const ShownUnits& units);

  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  std::function<void(LinkId, std::optional<double> frequencyMhz)> onEdited;
  std::function<void(const QString&)> onProblem;

 private:
  QString textOf(const Link& link, const LinkResult* result, int column) const;
  QVariant sortKey(const Link& link, const LinkResult* result, int column) const;

  const Plan& plan_;
  const LinkAnalysis& analysis_;
  ShownUnits units_;
};

}  // namespace zel::host
