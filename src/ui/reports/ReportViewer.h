#pragma once

#include <QWidget>
#include <memory>

class QComboBox;
class QLabel;
class QPrinter;
class QScrollArea;
class QToolButton;

namespace tessaly {
class ReportDocument;
}

namespace tessaly::ui {

class ReportPageView;

// The report viewer window: one page of a finished report at a time on grey,
// paged with first, previous, next and last, zoomed by steps or to fit the
// page or its width, printed through the desktop's print dialog, and
// exported to PDF or TIFF.
class ReportViewer final : public QWidget {
    Q_OBJECT
public:
    // The zoom choices, in percent; the fits follow them in the zoom box.
    static constexpr int ZoomSteps[] = {25, 50, 75, 100, 125, 150, 200, 300, 400};

    explicit ReportViewer(std::shared_ptr<ReportDocument> report, QWidget* parent = nullptr);
    ~ReportViewer() override;

    ReportDocument& report() const { return *report_; }
    // The page shown, from 0, and the zoom in percent.
    int page() const { return page_; }
    int zoom() const { return zoom_; }
    void showPage(int index);
    void setZoom(int percent);
    void zoomIn();
    void zoomOut();
    void fitPage();
    void fitWidth();
    // The text of the page box: "Page 2 of 3".
    QString pageText() const;

    // Prints every page onto a printer made ready by the print dialog.
    void printTo(QPrinter& printer) const;
    // Writes the report to a file; a failure is shown in a message box over
    // the viewer. Returns true when the file was written.
    bool exportTo(const QString& path, bool pdf);

private:
    void buildToolBar();
    void print();
    void askAndExport(bool pdf);
    void refresh();

    std::shared_ptr<ReportDocument> report_;
    ReportPageView* view_ = nullptr;
    QScrollArea* scroll_ = nullptr;
    QLabel* pageLabel_ = nullptr;
    QComboBox* zoomBox_ = nullptr;
    QToolButton* first_ = nullptr;
    QToolButton* previous_ = nullptr;
    QToolButton* next_ = nullptr;
    QToolButton* last_ = nullptr;
    int page_ = 0;
    int zoom_ = 100;
};

} // namespace tessaly::ui
