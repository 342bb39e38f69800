#include "testing.h"

#include <gesture_api/gesture.h>
#include <gesture_api/gesturekindfiltermodel.h>

#include <vellix/platform/vxcomponents.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QStandardItemModel>

using namespace vellix::gesture;
using vellix::components::ReadonlyLazyListModel;

class tst_GestureKindFilterModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The model tester shows everything as text.
        QMetaType::registerConverter<Gesture *, QString>([](Gesture *gesture) { return gesture->id(); });
        m_missing = new Feature(QStringLiteral("missing"), {}, this);
        add("tap", Gesture::Tap, true);
        add("hold", Gesture::Hold, true);
        add("swipe", Gesture::Swipe, true);
        add("no action", Gesture::Tap, false);
        add("unsupported", Gesture::Tap, true, {m_missing});
        add("unsupported, no action", Gesture::Tap, false, {m_missing});
        m_model = new ReadonlyLazyListModel([this] { return m_gestures.size(); },
                                            [this](int i) { return QVariant::fromValue(m_gestures.at(i)); }, this);
    }

    void filter_data()
    {
        QTest::addColumn<QList<int>>("whiteList");
        QTest::addColumn<QList<int>>("blackList");
        QTest::addColumn<bool>("noActionVisible");
        QTest::addColumn<QStringList>("expected");
        const QList<int> none;
        QTest::newRow("defaults hide what offers no action or is unsupported")
                << none << none << false << QStringList({"tap", "hold", "swipe"});
        QTest::newRow("no action shown on demand; unsupported never")
                << none << none << true << QStringList({"tap", "hold", "swipe", "no action"});
        QTest::newRow("white list") << QList<int>{1, 2} << none << false << QStringList({"hold", "swipe"});
        QTest::newRow("black list") << none << QList<int>{1, 2} << false << QStringList({"tap"});
        QTest::newRow("a white list makes the black list void")
                << QList<int>{0} << QList<int>{0} << false << QStringList({"tap"});
        QTest::newRow("a white list of nothing there") << QList<int>{3} << none << true << QStringList();
        QTest::newRow("the kind is tested for gestures without action, too")
                << none << QList<int>{0} << true << QStringList({"hold", "swipe"});
    }

    void filter()
    {
        GestureKindFilterModel filter;
        QAbstractItemModelTester tester(&filter, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QFETCH(QList<int>, whiteList);
        QFETCH(QList<int>, blackList);
        QFETCH(bool, noActionVisible);
        filter.setWhiteList(whiteList);
        filter.setBlackList(blackList);
        filter.setNoActionVisible(noActionVisible);
        filter.setSourceModel(m_model);
        QTEST(idsOf(filter), "expected");
    }

    void noSourceModelAcceptsAll()
    {
        GestureKindFilterModel filter;
        QVERIFY(filter.filterAcceptsRow(0, QModelIndex()));
    }

    void rowPastTheEndIsAccepted()
    {
        GestureKindFilterModel filter;
        filter.setWhiteList({3});
        filter.setSourceModel(m_model);
        QVERIFY(!filter.filterAcceptsRow(0, QModelIndex()));
        QVERIFY(filter.filterAcceptsRow(m_gestures.size(), QModelIndex()));
        QVERIFY(filter.filterAcceptsRow(100, QModelIndex()));
    }

    void sourceParentIsIgnored()
    {
        GestureKindFilterModel filter;
        filter.setBlackList({Gesture::Hold});
        filter.setSourceModel(m_model);
        QVERIFY(filter.filterAcceptsRow(0, m_model->index(1)));
        QVERIFY(!filter.filterAcceptsRow(1, m_model->index(0)));
    }

    void rowsThatAreNoGesturesAreShown()
    {
        QStandardItemModel model;
        model.appendRow(new QStandardItem(QStringLiteral("text")));
        auto *object = new QStandardItem;
        object->setData(QVariant::fromValue<QObject *>(this), Qt::DisplayRole);
        model.appendRow(object);
        auto *hidden = new QStandardItem;
        hidden->setData(QVariant::fromValue<QObject *>(m_gestures.at(3)), Qt::DisplayRole);
        model.appendRow(hidden); // a pointer to the base class, with a gesture
        auto *null = new QStandardItem;
        null->setData(QVariant::fromValue<Gesture *>(nullptr), Qt::DisplayRole);
        model.appendRow(null);
        GestureKindFilterModel filter;
        filter.setSourceModel(&model);
        QCOMPARE(filter.rowCount(), 3);
        QVERIFY(!filter.filterAcceptsRow(2, QModelIndex()));
    }

    void settersTellChangesOnly()
    {
        GestureKindFilterModel filter;
        QSignalSpy black(&filter, &GestureKindFilterModel::blackListChanged);
        QSignalSpy white(&filter, &GestureKindFilterModel::whiteListChanged);
        QSignalSpy noAction(&filter, &GestureKindFilterModel::noActionVisibleChanged);
        filter.setBlackList({});
        filter.setWhiteList({});
        filter.setNoActionVisible(false);
        QCOMPARE(black.size() + white.size() + noAction.size(), 0);
        filter.setBlackList({1, 2});
        filter.setBlackList({1, 2});
        QCOMPARE(black.size(), 1);
        QCOMPARE(black.at(0).at(0).value<QList<int>>(), QList<int>({1, 2}));
        filter.setBlackList({2, 1}); // another order is another list
        QCOMPARE(black.size(), 2);
        filter.setProperty("whiteList", QVariant::fromValue(QList<int>{3}));
        filter.setProperty("whiteList", QVariant::fromValue(QList<int>{3}));
        QCOMPARE(white.size(), 1);
        filter.setNoActionVisible(true);
        filter.setNoActionVisible(true);
        QCOMPARE(noAction.size(), 1);
        QCOMPARE(noAction.at(0).at(0).toBool(), true);
    }

    void changedListsDoNotFilterAgain()
    {
        GestureKindFilterModel filter;
        filter.setSourceModel(m_model);
        const QStringList before = idsOf(filter);
        QSignalSpy black(&filter, &GestureKindFilterModel::blackListChanged);
        filter.setBlackList({Gesture::Tap});
        filter.setNoActionVisible(true);
        QCOMPARE(black.size(), 1);
        QCOMPARE(idsOf(filter), before);
        filter.setWhiteList({Gesture::Drag});
        QCOMPARE(idsOf(filter), before);
        filter.setWhiteList({});
        filter.setSourceModel(nullptr);
        filter.setSourceModel(m_model);
        QCOMPARE(idsOf(filter), QStringList({QStringLiteral("hold"), QStringLiteral("swipe")}));
    }

private:
    void add(const char *id, Gesture::Kind kind, bool withAction, const QList<Feature *> &features = {})
    {
        const QList<Action *> actions =
                withAction ? QList<Action *>{new Action(QString::fromLatin1(id), {}, {})} : QList<Action *>();
        m_gestures.append(new Gesture(QString::fromLatin1(id), {}, kind, Gesture::wholeZone, Gesture::NoDirection,
                                      actions, nullptr, nullptr, features, this));
    }

    static QStringList idsOf(const GestureKindFilterModel &filter)
    {
        QStringList ids;
        for (int row = 0; row < filter.rowCount(); ++row)
            ids.append(filter.index(row, 0).data().value<Gesture *>()->id());
        return ids;
    }

    Feature *m_missing = nullptr;
    QList<Gesture *> m_gestures;
    ReadonlyLazyListModel *m_model = nullptr;
};

QTEST_GUILESS_MAIN(tst_GestureKindFilterModel)
#include "tst_gesturekindfiltermodel.moc"
