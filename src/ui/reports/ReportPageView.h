#pragma once

#include <QWidget>

namespace tessaly {
class ReportDocument;
}

namespace tessaly::ui {

// One page of a report on screen: the paper, white with a shadow, at the
// zoom's size (100% is the paper's size at the screen's resolution).
class ReportPageView final : public QWidget {
    Q_OBJECT
public:
    explicit ReportPageView(ReportDocument& report, QWidget* parent = nullptr);

    void show(int page, int zoomPercent);
    // The paper's size in pixels at the zoom.
    QSize paperPixels() const;
    QSize sizeHint() const override;

    // Margin around the paper, in pixels.
    static constexpr int Margin = 16;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ReportDocument& report_;
    int page_ = 0;
    int zoom_ = 100;
};

} // namespace tessaly::ui
