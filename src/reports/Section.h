#pragma once

#include "ReportControl.h"

#include <functional>
#include <memory>
#include <vector>

namespace tessaly::reports {

// The kinds of section, in the order they print.
enum class SectionType {
    ReportHeader, // once, at the top of the first page
    PageHeader,   // at the top of every page
    Detail,       // once for each row of the report's data
    PageFooter,   // at the foot of every page
    ReportFooter, // once, after the last row
};

// A band of a report: a height in twips, its controls and its Format event,
// which runs each time the section is about to print.
class Section final : public EngineObject {
public:
    Section(QString name, SectionType type, double height);

    const QString& name() const { return name_; }
    SectionType type() const { return type_; }
    QString typeName() const override { return name_; }

    double Height = 0; // twips
    bool Visible = true;

    // Adds a control; its name is also a member of the section and of the report.
    template <class T> T& add(std::shared_ptr<T> control) {
        T& added = *control;
        controls_.push_back(std::move(control));
        return added;
    }
    const std::vector<ControlPtr>& controls() const { return controls_; }
    ReportControl* find(const QString& name) const;

    // The Format event.
    std::function<void()> onFormat;

protected:
    AutoPtr child(const QString& name) const override;
    QStringList childNames() const override;

private:
    QString name_;
    SectionType type_;
    std::vector<ControlPtr> controls_;
};

using SectionPtr = std::shared_ptr<Section>;

} // namespace tessaly::reports
