// The Designer plugin as a form sees it: QUiLoader finds the plugin, builds the scope that a
// .ui file names, gives it the properties the file sets, and the scope paints. The program
// does not link the library itself, so every call goes through the plugin.
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QUiLoader>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace {

std::unique_ptr<QWidget> LoadForm(QUiLoader& ALoader)
{
    ALoader.clearPluginPaths();
    ALoader.addPluginPath(QStringLiteral(QV_PLUGIN_DIR));
    QFile File(QStringLiteral(QV_UI_FILE));
    if (!File.open(QIODevice::ReadOnly))
        return nullptr;
    return std::unique_ptr<QWidget>(ALoader.load(&File));
}

} // namespace

TEST(DesignerPlugin, AFormWithAScopeLoadsAndTheScopePaints)
{
    QUiLoader Loader;
    std::unique_ptr<QWidget> Form = LoadForm(Loader);
    ASSERT_TRUE(Form) << Loader.errorString().toStdString();
    EXPECT_TRUE(Loader.availableWidgets().contains(QStringLiteral("qv::TQVScopeWidget")));
    QWidget* Scope = Form->findChild<QWidget*>(QStringLiteral("scope"));
    ASSERT_NE(Scope, nullptr);
    EXPECT_TRUE(Scope->inherits("qv::TQVScopeWidget")) << Scope->metaObject()->className();

    // The properties the form sets reached the scope, and read back from it.
    EXPECT_EQ(Scope->property("title").toString(), QStringLiteral("Designed scope"));
    EXPECT_EQ(Scope->property("channelCount").toInt(), 3);
    EXPECT_EQ(Scope->property("sizeLimit").toInt(), 50000);
    EXPECT_EQ(Scope->property("backgroundColor").value<QColor>(), QColor(0, 0, 64));

    // Laid out by the form and painted: the background colour fills most of it, and the
    // title, axes and grid draw on it.
    Form->resize(400, 520);
    const QImage Shot = Scope->grab().toImage().convertToFormat(QImage::Format_RGB32);
    ASSERT_GT(Shot.width(), 300);
    int Background = 0, Other = 0;
    for (int Y = 0; Y < Shot.height(); ++Y)
        for (int X = 0; X < Shot.width(); ++X)
            (Shot.pixel(X, Y) == qRgb(0, 0, 64) ? Background : Other)++;
    EXPECT_GT(Background, Shot.width() * Shot.height() / 3);
    EXPECT_GT(Other, 500);
}

TEST(DesignerPlugin, AFormWithAWaterfallLoadsAndTheWaterfallPaints)
{
    QUiLoader Loader;
    std::unique_ptr<QWidget> Form = LoadForm(Loader);
    ASSERT_TRUE(Form) << Loader.errorString().toStdString();
    EXPECT_TRUE(Loader.availableWidgets().contains(QStringLiteral("qv::TQVWaterfallWidget")));
    QWidget* Waterfall = Form->findChild<QWidget*>(QStringLiteral("waterfall"));
    ASSERT_NE(Waterfall, nullptr);
    EXPECT_TRUE(Waterfall->inherits("qv::TQVWaterfallWidget")) << Waterfall->metaObject()->className();
    EXPECT_EQ(Waterfall->property("backgroundColor").value<QColor>(), QColor(0, 48, 0));

    Form->resize(400, 520);
    const QImage Shot = Waterfall->grab().toImage().convertToFormat(QImage::Format_RGB32);
    ASSERT_GT(Shot.width(), 300);
    int Background = 0;
    for (int Y = 0; Y < Shot.height(); ++Y)
        for (int X = 0; X < Shot.width(); ++X)
            Background += Shot.pixel(X, Y) == qRgb(0, 48, 0);
    EXPECT_GT(Background, Shot.width() * Shot.height() / 10);
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication App(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
