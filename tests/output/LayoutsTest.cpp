// The two export layouts as the program and scripts read them: every number
// of their table, their one control and its fit.
#include "OutputFixture.h"

#include "output/ExportLayouts.h"

using namespace tessaly;
using namespace tessaly::test;

namespace {

QVariant read(Application& app, const QString& path) {
    const QStringList parts = path.split(QLatin1Char('.'));
    AutoPtr object = toObject(app.get(parts[0]));
    for (qsizetype i = 1; i + 1 < parts.size(); ++i)
        object = toObject(object->get(parts[i]));
    return object->get(parts.back());
}

struct Expected {
    const char* path;
    double value;
};

class Layouts : public OutputFixture {};

} // namespace

TEST_F(Layouts, PortrateHasTheNumbersOfItsTable) {
    const Expected numbers[] = {
        {"ExportOuputPortrate.PageSettings.PaperWidth", 12240},
        {"ExportOuputPortrate.PageSettings.PaperHeight", 15840},
        {"ExportOuputPortrate.PageSettings.Orientation", 1},
        {"ExportOuputPortrate.PageSettings.LeftMargin", 0},
        {"ExportOuputPortrate.PageSettings.RightMargin", 0},
        {"ExportOuputPortrate.PageSettings.TopMargin", 0},
        {"ExportOuputPortrate.PageSettings.BottomMargin", 0},
        {"ExportOuputPortrate.PrintWidth", 12210},
        {"ExportOuputPortrate.Detail.Height", 16740},
        {"ExportOuputPortrate.PageHeader.Height", 0},
        {"ExportOuputPortrate.PageFooter.Height", 0},
        {"ExportOuputPortrate.ImgEMF.Left", 425},
        {"ExportOuputPortrate.ImgEMF.Top", 472},
        {"ExportOuputPortrate.ImgEMF.Width", 11150},
        {"ExportOuputPortrate.ImgEMF.Height", 15780},
        {"ExportOuputPortrate.ImgEMF.SizeMode", 2},
        {"ExportOuputPortrate.ImgEMF.PictureAlignment", 2},
        {"ExportOuputPortrate.Detail.ControlCount", 1},
        {"ExportOuputPortrate.PageHeader.ControlCount", 0},
        {"ExportOuputPortrate.PageFooter.ControlCount", 0},
    };
    for (const Expected& e : numbers)
        EXPECT_EQ(read(*app, QString::fromLatin1(e.path)).toDouble(), e.value) << e.path;
    EXPECT_EQ(read(*app, QStringLiteral("ExportOuputPortrate.Title")).toString(),
              QStringLiteral("Tessaly Export Ouput"));
}

TEST_F(Layouts, LandscapeHasTheNumbersOfItsTable) {
    const Expected numbers[] = {
        {"ExportOuputLandscape.PageSettings.PaperWidth", 12240},
        {"ExportOuputLandscape.PageSettings.PaperHeight", 15840},
        {"ExportOuputLandscape.PageSettings.Orientation", 2},
        {"ExportOuputLandscape.PageSettings.LeftMargin", 360},
        {"ExportOuputLandscape.PageSettings.RightMargin", 360},
        {"ExportOuputLandscape.PageSettings.TopMargin", 0},
        {"ExportOuputLandscape.PageSettings.BottomMargin", 360},
        {"ExportOuputLandscape.PrintWidth", 16590},
        {"ExportOuputLandscape.Detail.Height", 11640},
        {"ExportOuputLandscape.PageHeader.Height", 0},
        {"ExportOuputLandscape.PageFooter.Height", 0},
        {"ExportOuputLandscape.ImgEMF.Left", 510},
        {"ExportOuputLandscape.ImgEMF.Top", 567},
        {"ExportOuputLandscape.ImgEMF.Width", 15818},
        {"ExportOuputLandscape.ImgEMF.Height", 10772},
        {"ExportOuputLandscape.ImgEMF.SizeMode", 2},
        {"ExportOuputLandscape.ImgEMF.PictureAlignment", 2},
        {"ExportOuputLandscape.Detail.ControlCount", 1},
    };
    for (const Expected& e : numbers)
        EXPECT_EQ(read(*app, QString::fromLatin1(e.path)).toDouble(), e.value) << e.path;
    EXPECT_EQ(read(*app, QStringLiteral("ExportOuputLandscape.Title")).toString(),
              QStringLiteral("Tessaly Export Ouput"));
}

TEST_F(Layouts, EachNameIsOneInstanceUntilUnloaded) {
    const reports::ReportPtr first = module().layout(QStringLiteral("ExportOuputPortrate"));
    EXPECT_EQ(toObject(app->get(QStringLiteral("ExportOuputPortrate"))).get(), first.get());
    EXPECT_EQ(module().layoutFor(false).get(), first.get());
    EXPECT_EQ(module().layoutFor(true)->name(), QStringLiteral("ExportOuputLandscape"));
    first->Unload();
    EXPECT_EQ(module().loadedLayout(QStringLiteral("ExportOuputPortrate")), nullptr);
    EXPECT_NE(module().layout(QStringLiteral("ExportOuputPortrate")).get(), first.get());
}

TEST_F(Layouts, TheStartLoadsPrintTempIntoImgEmf) {
    const reports::ReportPtr layout = module().layoutFor(true);
    // No PrintTemp.emf yet: an empty picture.
    layout->Run(false);
    EXPECT_EQ(read(*app, QStringLiteral("ExportOuputLandscape.ImgEMF.Picture.Type")).toInt(), 0);
    EXPECT_TRUE(layout->Pages().page(0).items().empty());
    engine().saveFile(printTemp(), canvas::save_format::Emf);
    layout->Run(false);
    EXPECT_EQ(read(*app, QStringLiteral("ExportOuputLandscape.ImgEMF.Picture.Type")).toInt(), 4);
    EXPECT_EQ(read(*app, QStringLiteral("ExportOuputLandscape.ImgEMF.Picture.Width")).toInt(), 29500);
    ASSERT_EQ(layout->Pages().count(), 1);
    EXPECT_EQ(layout->Pages().page(0).items().size(), 1u);
}

TEST_F(Layouts, ADamagedPrintTempGivesAnEmptyPicture) {
    QFile damaged(printTemp());
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write(QByteArray(" EMF damaged beyond repair", 26).repeated(20));
    damaged.close();
    const reports::ReportPtr layout = module().layoutFor(false);
    layout->Run(false);
    EXPECT_EQ(read(*app, QStringLiteral("ExportOuputPortrate.ImgEMF.Picture.Type")).toInt(), 0);
    ASSERT_EQ(layout->Pages().count(), 1);
    EXPECT_TRUE(layout->Pages().page(0).items().empty());
}
