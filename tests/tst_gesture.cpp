#include "testing.h"

#include <gesture_api/gesture.h>

#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSequentialIterable>
#include <QSignalSpy>

#include <limits>
#include <optional>

using namespace vellix::gesture;
using testing::debugText;

using Actions = QList<Action *>;
using FeatureList = QQmlListProperty<vellix::gesture::Feature>;

static const double notANumber = std::numeric_limits<double>::quiet_NaN();
static const double infinity = std::numeric_limits<double>::infinity();
static const QRectF leftZone(0, 0.2, 0.25, 0.6);

static Action *newAction(const char *path, const QStringList &titles = {})
{
    return new Action(QString::fromLatin1(path), titles, {});
}

/// A tap with only a current action.
static Gesture *newTap(Action *current, QObject *parent = nullptr)
{
    return new Gesture(QStringLiteral("id"), {}, Gesture::Tap, leftZone, Gesture::NoDirection, {}, nullptr, current, {},
                       parent);
}

static Gesture *withActions(const Actions &available, Action *byDefault, Action *current, QObject *parent)
{
    return new Gesture(QStringLiteral("id"), {QStringLiteral("pdf")}, Gesture::Swipe, leftZone, Gesture::ToLeft,
                       available, byDefault, current, {}, parent);
}

class tst_Gesture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sectionTypeIsKnownFromTheStart() { QVERIFY(QMetaType::type("GestureSection") != QMetaType::UnknownType); }

    void enumsByName_data()
    {
        QTest::addColumn<QString>("enumeration");
        QTest::addColumn<int>("value");
        QTest::newRow("Tap") << "Kind" << 0;
        QTest::newRow("Hold") << "Kind" << 1;
        QTest::newRow("Swipe") << "Kind" << 2;
        QTest::newRow("Drag") << "Kind" << 3;
        QTest::newRow("Undefined") << "Kind" << 4;
        QTest::newRow("ToLeft") << "Direction" << 0;
        QTest::newRow("ToRight") << "Direction" << 1;
        QTest::newRow("ToTop") << "Direction" << 2;
        QTest::newRow("ToBottom") << "Direction" << 3;
        QTest::newRow("NoDirection") << "Direction" << 4;
    }

    void enumsByName()
    {
        QFETCH(QString, enumeration);
        const QMetaObject &meta = Gesture::staticMetaObject;
        const QMetaEnum keys = meta.enumerator(meta.indexOfEnumerator(qPrintable(enumeration)));
        QCOMPARE(keys.keyCount(), 5);
        QTEST(keys.keyToValue(QTest::currentDataTag()), "value");
    }

    void wholeZone()
    {
        const QRectF zone = Gesture::wholeZone;
        QVERIFY(zone.x() == 0.0 && zone.y() == 0.0 && zone.width() == 1.0 && zone.height() == 1.0);
    }

    void formId_data()
    {
        QTest::addColumn<QStringList>("modes");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("zone");
        QTest::addColumn<int>("direction");
        QTest::addColumn<QString>("expected");
        const QStringList none;
        const QStringList two{QStringLiteral("pdf"), QStringLiteral("reading")};
        QTest::newRow("modes and zone") << two << 0 << "leftTop" << 4 << "PdfReadingTapLeftTopNoDirection";
        QTest::newRow("direction only") << none << 2 << "notSet" << 0 << "SwipeNotSetToLeft";
        QTest::newRow("modes keep their order")
                << QStringList{QStringLiteral("b"), QStringLiteral("a")} << 1 << "z" << 1 << "BAHoldZToRight";
        QTest::newRow("only first letters change")
                << QStringList{QStringLiteral("pDF"), QStringLiteral("éa")} << 3 << "lEFT" << 2 << "PDFÉaDragLEFTToTop";
        QTest::newRow("empty mode and zone name") << QStringList{QString()} << 0 << "" << 3 << "TapToBottom";
        QTest::newRow("rectangle as zone name") << none << 0 << "(0,0,1,1)" << 4 << "Tap(0,0,1,1)NoDirection";
        QTest::newRow("undefined kind has a key") << none << 4 << "z" << 4 << "UndefinedZNoDirection";
        QTest::newRow("kind outside the enum") << none << 5 << "z" << 0 << "ZToLeft";
        QTest::newRow("direction outside the enum") << none << 0 << "z" << 7 << "TapZ";
        QTest::newRow("both outside, nothing else") << none << 7 << "" << 5 << "";
    }

    void formId()
    {
        QFETCH(QStringList, modes);
        QFETCH(int, kind);
        QFETCH(QString, zone);
        QFETCH(int, direction);
        QTEST(Gesture::formId(modes, static_cast<Gesture::Kind>(kind), zone,
                              static_cast<Gesture::Direction>(direction)),
              "expected");
    }

    void directionFromVec_data()
    {
        QTest::addColumn<double>("dx");
        QTest::addColumn<double>("dy");
        QTest::addColumn<Gesture::Direction>("expected");
        QTest::newRow("no movement") << 0.0 << 0.0 << Gesture::NoDirection;
        QTest::newRow("negative zeros") << -0.0 << -0.0 << Gesture::NoDirection;
        QTest::newRow("diagonal up") << 3.0 << -3.0 << Gesture::NoDirection;
        QTest::newRow("diagonal back") << -3.0 << -3.0 << Gesture::NoDirection;
        QTest::newRow("mostly right") << 2.0 << 1.0 << Gesture::ToRight;
        QTest::newRow("mostly left") << -2.0 << 1.0 << Gesture::ToLeft;
        QTest::newRow("left and up") << -2.0 << -1.0 << Gesture::ToLeft;
        QTest::newRow("mostly up") << 1.0 << -2.0 << Gesture::ToTop;
        QTest::newRow("straight down") << 0.0 << 5.0 << Gesture::ToBottom;
        QTest::newRow("down and left") << -1.0 << 2.0 << Gesture::ToBottom;
        QTest::newRow("NaN x") << notANumber << 1.0 << Gesture::NoDirection;
        QTest::newRow("NaN y") << 1.0 << notANumber << Gesture::NoDirection;
        QTest::newRow("NaN both") << notANumber << notANumber << Gesture::NoDirection;
        QTest::newRow("NaN beside infinity") << infinity << notANumber << Gesture::NoDirection;
        QTest::newRow("infinitely right") << infinity << 1.0 << Gesture::ToRight;
        QTest::newRow("infinitely left") << -infinity << 1.0 << Gesture::ToLeft;
        QTest::newRow("infinitely down") << 1.0 << infinity << Gesture::ToBottom;
        QTest::newRow("infinitely up") << 1.0 << -infinity << Gesture::ToTop;
        QTest::newRow("two infinities") << infinity << -infinity << Gesture::NoDirection;
    }

    void directionFromVec()
    {
        QFETCH(double, dx);
        QFETCH(double, dy);
        QTEST(Gesture::directionFromVec(dx, dy), "expected");
        QTEST(Gesture::directionFromVec(QVector2D(static_cast<float>(dx), static_cast<float>(dy))), "expected");
    }

    void directionIsJudgedInDoublePrecision()
    {
        const double justMore = 1 + 1e-12;
        QCOMPARE(Gesture::directionFromVec(justMore, 1), Gesture::ToRight);
        QCOMPARE(Gesture::directionFromVec(-1, -justMore), Gesture::ToTop);
        QCOMPARE(Gesture::directionFromVec(std::numeric_limits<double>::denorm_min(), 0), Gesture::ToRight);
        // A vector holds floats, and as floats the two are equal.
        QCOMPARE(Gesture::directionFromVec(QVector2D(static_cast<float>(justMore), 1)), Gesture::NoDirection);
    }

    void holdsWhatItIsMadeOf()
    {
        QObject parent;
        Action *a = newAction("a");
        Feature feature(QStringLiteral("f"), {});
        const QStringList unsorted{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")};
        const Gesture *gesture = new Gesture(QStringLiteral("id"), unsorted, Gesture::Drag, QRectF(4, -3, -2, 0),
                                             Gesture::ToTop, {a, nullptr, a}, nullptr, a, {&feature}, &parent);
        QCOMPARE(gesture->parent(), &parent);
        QCOMPARE(gesture->id(), QStringLiteral("id"));
        QCOMPARE(gesture->modes(), unsorted);
        QCOMPARE(gesture->kind(), Gesture::Drag);
        QCOMPARE(gesture->zone(), QRectF(4, -3, -2, 0));
        QCOMPARE(gesture->direction(), Gesture::ToTop);
        QCOMPARE(gesture->availableActions(), (Actions{a, nullptr, a}));
        QCOMPARE(gesture->defaultAction(), nullptr);
        QCOMPARE(gesture->currentAction(), a);
        QCOMPARE(gesture->featureList(), QList<Feature *>{&feature});
        QCOMPARE(feature.parent(), nullptr);
    }

    void currentActionDefaults_data()
    {
        QTest::addColumn<bool>("hasDefault");
        QTest::addColumn<bool>("hasCurrent");
        QTest::addColumn<QString>("expected");
        QTest::newRow("neither") << false << false << "none";
        QTest::newRow("default only") << true << false << "default";
        QTest::newRow("current only") << false << true << "current";
        QTest::newRow("both") << true << true << "current";
    }

    void currentActionDefaults()
    {
        QFETCH(bool, hasDefault);
        QFETCH(bool, hasCurrent);
        QObject parent;
        const Gesture *gesture = withActions({}, hasDefault ? newAction("default") : nullptr,
                                             hasCurrent ? newAction("current") : nullptr, &parent);
        const Action *current = gesture->currentAction();
        QTEST(current ? current->path() : QStringLiteral("none"), "expected");
        QCOMPARE(gesture->defaultAction() != nullptr, hasDefault);
    }

    void actionsAreAdoptedInOrder_data()
    {
        QTest::addColumn<QString>("available");
        QTest::addColumn<QString>("byDefault");
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("children");
        QTest::newRow("available, default, current") << "bc"
                                                     << "a"
                                                     << "d"
                                                     << "bcad";
        QTest::newRow("list order") << "cab"
                                    << ""
                                    << ""
                                    << "cab";
        QTest::newRow("default before current") << ""
                                                << "b"
                                                << "a"
                                                << "ba";
        QTest::newRow("default only") << ""
                                      << "a"
                                      << ""
                                      << "a";
        QTest::newRow("an action is one child") << "aba"
                                                << "b"
                                                << "a"
                                                << "ab";
        QTest::newRow("none") << ""
                              << ""
                              << ""
                              << "";
    }

    void actionsAreAdoptedInOrder()
    {
        QFETCH(QString, available);
        QFETCH(QString, byDefault);
        QFETCH(QString, current);
        QObject formerOwner;
        QMap<QChar, Action *> made;
        for (const QChar name : QStringLiteral("abcd"))
            made.insert(name, new Action(QString(name), {}, {}, &formerOwner));
        Actions list{nullptr};
        for (const QChar name : available)
            list.append(made.value(name));

        QObject parent;
        const Gesture *gesture = withActions(list, byDefault.isEmpty() ? nullptr : made.value(byDefault[0]),
                                             current.isEmpty() ? nullptr : made.value(current[0]), &parent);
        QString children;
        for (const QObject *child : gesture->children())
            children.append(qobject_cast<const Action *>(child)->path());
        QTEST(children, "children");
        QCOMPARE(formerOwner.children().size(), 4 - children.size());
    }

    void actionsDieWithTheirGesture()
    {
        const QPointer<Action> available = newAction("a");
        const QPointer<Action> byDefault = newAction("b");
        const QPointer<Action> current = newAction("c");
        delete withActions({available}, byDefault, current, nullptr);
        QVERIFY(!available && !byDefault && !current);
    }

    void setCurrentAction()
    {
        QObject owner;
        Action *first = newAction("first");
        auto *second = new Action(QStringLiteral("second"), {}, {}, &owner);
        QScopedPointer<Gesture> gesture(newTap(first));
        QSignalSpy changes(gesture.data(), &Gesture::currentActionChanged);

        gesture->setCurrentAction(first);
        QCOMPARE(changes.size(), 0);
        gesture->setCurrentAction(second);
        gesture->setCurrentAction(second);
        QCOMPARE(gesture->currentAction(), second);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.takeFirst().at(0).value<Action *>(), second);
        QCOMPARE(second->parent(), &owner);
        QCOMPARE(first->parent(), gesture.data());
        gesture->setCurrentAction(nullptr);
        QCOMPARE(gesture->currentAction(), nullptr);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.takeFirst().at(0).value<Action *>(), nullptr);
    }

    void currentActionIsNewWhenTheSignalComes()
    {
        QScopedPointer<Gesture> gesture(newTap(nullptr));
        Action action;
        const Action *seen = nullptr;
        connect(gesture.data(), &Gesture::currentActionChanged, this, [&] { seen = gesture->currentAction(); });
        QVERIFY(gesture->setProperty("currentAction", QVariant::fromValue(&action)));
        QCOMPARE(seen, &action);
    }

    void mergeMatches_data()
    {
        QTest::addColumn<Gesture::Kind>("kind");
        QTest::addColumn<QRectF>("zone");
        QTest::addColumn<QRectF>("otherZone");
        QTest::addColumn<Gesture::Direction>("direction");
        QTest::addColumn<bool>("expected");
        const QRectF zone(0.1, 0.2, 0.3, 0.4);
        const Gesture::Direction none = Gesture::NoDirection;
        QTest::newRow("the same") << Gesture::Tap << zone << zone << none << true;
        QTest::newRow("other kind") << Gesture::Hold << zone << zone << none << false;
        QTest::newRow("other direction") << Gesture::Tap << zone << zone << Gesture::ToLeft << false;
        QTest::newRow("other x") << Gesture::Tap << zone << QRectF(0.1001, 0.2, 0.3, 0.4) << none << false;
        QTest::newRow("other y") << Gesture::Tap << zone << QRectF(0.1, 0.2001, 0.3, 0.4) << none << false;
        QTest::newRow("other width") << Gesture::Tap << zone << QRectF(0.1, 0.2, 0.3001, 0.4) << none << false;
        QTest::newRow("other height") << Gesture::Tap << zone << QRectF(0.1, 0.2, 0.3, 0.4001) << none << false;
        QTest::newRow("a little less high")
                << Gesture::Tap << QRectF(0, 0, 1, 1) << QRectF(0, 0, 1, 0.9999) << none << false;
        QTest::newRow("rounding is forgiven")
                << Gesture::Tap << zone << QRectF(0.1 + 5e-14, 0.2 - 1e-13, 0.3 + 2e-13, 0.4 - 3e-13) << none << true;
        QTest::newRow("just too much rounding")
                << Gesture::Tap << zone << QRectF(0.1 + 2e-13, 0.2, 0.3, 0.4) << none << false;
        QTest::newRow("nothing is near zero")
                << Gesture::Tap << QRectF(0, 0, 1, 1) << QRectF(1e-13, 0, 1, 1) << none << false;
        QTest::newRow("NaN never matches")
                << Gesture::Tap << QRectF(notANumber, 0, 1, 1) << QRectF(notANumber, 0, 1, 1) << none << false;
    }

    void mergeMatches()
    {
        QFETCH(Gesture::Kind, kind);
        QFETCH(QRectF, zone);
        QFETCH(QRectF, otherZone);
        QFETCH(Gesture::Direction, direction);
        QObject parent;
        Action *before = newAction("before");
        Action *offered = newAction("offered");
        auto *gesture = new Gesture(QStringLiteral("a"), {QStringLiteral("pdf")}, Gesture::Tap, zone,
                                    Gesture::NoDirection, {}, nullptr, before, {}, &parent);
        auto *other =
                new Gesture(QStringLiteral("b"), {}, kind, otherZone, direction, {}, nullptr, offered, {}, &parent);
        QSignalSpy changes(gesture, &Gesture::currentActionChanged);

        QFETCH(bool, expected);
        QCOMPARE(gesture->merge(other), expected);
        QCOMPARE(gesture->currentAction(), expected ? offered : before);
        QCOMPARE(changes.size(), expected ? 1 : 0);
        QCOMPARE(gesture->id(), QStringLiteral("a"));
        QCOMPARE(other->currentAction(), offered);
        QCOMPARE(offered->parent(), other);
        QCOMPARE(before->parent(), gesture);
    }

    void mergeOfEqualActionsIsSilent()
    {
        QObject parent;
        Action *shared = newAction("shared");
        Gesture *gesture = newTap(shared, &parent);
        Gesture *other = newTap(shared, &parent);
        QSignalSpy changes(gesture, &Gesture::currentActionChanged);
        QVERIFY(gesture->merge(other));
        QVERIFY(gesture->merge(gesture));
        QCOMPARE(gesture->currentAction(), shared);
        QCOMPARE(changes.size(), 0);
    }

    void mergeTakesOverNoActionToo()
    {
        QObject parent;
        Gesture *gesture = newTap(newAction("a"), &parent);
        QSignalSpy changes(gesture, &Gesture::currentActionChanged);
        QVERIFY(gesture->merge(newTap(nullptr, &parent)));
        QCOMPARE(gesture->currentAction(), nullptr);
        QCOMPARE(changes.size(), 1);
        QVERIFY(!gesture->merge(nullptr));
    }

    void clone()
    {
        QObject parent;
        QObject cloneParent;
        Feature feature(QStringLiteral("f"), {});
        Action *a = newAction("a");
        Action *b = newAction("b");
        Action *c = newAction("c");
        const auto *source = new Gesture(QStringLiteral("id"), {QStringLiteral("z"), QStringLiteral("a")},
                                         Gesture::Hold, leftZone, Gesture::ToBottom, {a, b}, b, c, {&feature}, &parent);
        const Gesture *clone = source->clone(&cloneParent);
        QCOMPARE(clone->parent(), &cloneParent);
        QCOMPARE(clone->id(), source->id());
        QCOMPARE(clone->modes(), source->modes());
        QCOMPARE(clone->kind(), Gesture::Hold);
        QCOMPARE(clone->zone(), leftZone);
        QCOMPARE(clone->direction(), Gesture::ToBottom);
        QCOMPARE(clone->availableActions(), (Actions{a, b}));
        QCOMPARE(clone->defaultAction(), b);
        QCOMPARE(clone->currentAction(), c);
        QCOMPARE(clone->featureList(), QList<Feature *>{&feature});
        QCOMPARE(clone->children(), (QObjectList{a, b, c}));
        QVERIFY(source->children().isEmpty());
        QCOMPARE(source->availableActions(), (Actions{a, b}));
    }

    void cloneFallsBackOnTheDefaultAction()
    {
        QObject parent;
        Gesture *gesture = withActions({}, newAction("default"), newAction("current"), &parent);
        gesture->setCurrentAction(nullptr);
        QCOMPARE(gesture->clone(&parent)->currentAction(), gesture->defaultAction());
        QCOMPARE(gesture->currentAction(), nullptr);
    }

    void sectionKey_data()
    {
        QTest::addColumn<QStringList>("modes");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("expected");
        QTest::newRow("no modes, Tap") << QStringList() << 0 << "0000000000000000";
        QTest::newRow("one mode, Swipe") << QStringList{QStringLiteral("pdf")} << 2
                                         << "0000000100000006007000640066"
                                            "00000002";
        QTest::newRow("two modes, Drag") << QStringList{QStringLiteral("a"), QStringLiteral("é€")} << 3
                                         << "00000002"
                                            "000000020061"
                                            "0000000400e920ac"
                                            "00000003";
        QTest::newRow("modes in another order are another section")
                << QStringList{QStringLiteral("é€"), QStringLiteral("a")} << 3
                << "00000002"
                   "0000000400e920ac"
                   "000000020061"
                   "00000003";
        QTest::newRow("empty mode") << QStringList{QLatin1String("")} << 4
                                    << "00000001"
                                       "00000000"
                                       "00000004";
        QTest::newRow("null mode") << QStringList{QString()} << 4
                                   << "00000001"
                                      "ffffffff"
                                      "00000004";
        QTest::newRow("negative kind") << QStringList() << -2
                                       << "00000000"
                                          "fffffffe";
    }

    void sectionKey()
    {
        QFETCH(QStringList, modes);
        QFETCH(int, kind);
        QTEST((GestureSection{modes, kind}.stringify()), "expected");
        if (kind < 0)
            return;
        const Gesture gesture(QStringLiteral("id"), modes, static_cast<Gesture::Kind>(kind), leftZone, Gesture::ToLeft,
                              {}, nullptr, nullptr, {});
        QTEST(gesture.section(), "expected");
        QTEST(gesture.section(), "expected");
    }

    void sectionIsAGadget()
    {
        const GestureSection section{{QStringLiteral("a")}, 3};
        const QMetaObject &meta = GestureSection::staticMetaObject;
        QCOMPARE(meta.propertyCount(), 2);
        for (int i : {0, 1})
            QVERIFY(!meta.property(i).isWritable());
        QCOMPARE(meta.property(0).name(), "modes");
        QCOMPARE(meta.property(0).readOnGadget(&section), QVariant(section.modes));
        QCOMPARE(meta.property(1).name(), "kind");
        QCOMPARE(meta.property(1).readOnGadget(&section), QVariant(3));
        QCOMPARE(QMetaType::metaObjectForType(QMetaType::type("GestureSection")), &meta);
    }

    void supported_data()
    {
        QTest::addColumn<QString>("features");
        QTest::addColumn<bool>("expected");
        QTest::addColumn<QString>("asked");
        QTest::newRow("no features") << "" << true << "";
        QTest::newRow("one there") << "y" << true << "y";
        QTest::newRow("one missing") << "n" << false << "n";
        QTest::newRow("all there") << "yy" << true << "yy";
        QTest::newRow("asked up to the first missing") << "yny" << false << "yn";
    }

    void supported()
    {
        QFETCH(QString, features);
        QObject owner;
        QString asked;
        QList<Feature *> list;
        for (const QChar name : features) {
            list.append(new Feature(
                    QString(name),
                    [name, &asked] {
                        asked += name;
                        return name == QLatin1Char('y');
                    },
                    &owner));
        }
        const Gesture gesture(QStringLiteral("id"), {}, Gesture::Tap, leftZone, Gesture::NoDirection, {}, nullptr,
                              nullptr, list);
        QCOMPARE(asked, QString());
        QTEST(gesture.supported(), "expected");
        QTEST(gesture.supported(), "expected");
        QTEST(asked, "asked");
    }

    void supportedIsJudgedOnce()
    {
        std::optional<Feature> feature;
        feature.emplace(QStringLiteral("f"), [] { return false; });
        const Gesture gesture(QStringLiteral("id"), {}, Gesture::Tap, leftZone, Gesture::NoDirection, {}, nullptr,
                              nullptr, {&*feature});
        QVERIFY(!gesture.supported());
        // Another feature at the address of the first one makes no difference any more.
        feature.emplace(QStringLiteral("f"), [] { return true; });
        QVERIFY(gesture.featureList().first()->supported());
        QVERIFY(!gesture.supported());
    }

    void actionTreeIsMadeOnce()
    {
        QObject parent;
        Action *open = newAction("reader/open", {QStringLiteral("Reader"), QStringLiteral("Open")});
        const Gesture *gesture = withActions({open, newAction("reader/close")}, newAction("default"), nullptr, &parent);
        const ActionProxyNode *tree = gesture->actionTree();
        QVERIFY(tree);
        QCOMPARE(gesture->actionTree(), tree);
        QCOMPARE(tree->parent(), nullptr);
        QCOMPARE(tree->pathSegment(), QStringLiteral("."));
        QCOMPARE(tree->childNodeList().size(), 1);
        QCOMPARE(tree->childNodeList().first()->title(), QStringLiteral("Reader"));
        QCOMPARE(tree->childNodeList().first()->childNodeList().size(), 2);
        delete open;
        QCOMPARE(gesture->availableActions().size(), 1);
        QCOMPARE(gesture->actionTree(), tree);
        QCOMPARE(tree->childNodeList().first()->childNodeList().size(), 2);
    }

    void noActionsMakeNoTree()
    {
        QObject parent;
        const Gesture *gesture = withActions({}, newAction("default"), newAction("current"), &parent);
        QCOMPARE(gesture->actionTree(), nullptr);
        QCOMPARE(gesture->actionTree(), nullptr);
    }

    void featuresAreAReadOnlyList()
    {
        Feature first(QStringLiteral("first"), {});
        Feature second(QStringLiteral("second"), {});
        Gesture gesture(QStringLiteral("id"), {}, Gesture::Tap, leftZone, Gesture::NoDirection, {}, nullptr, nullptr,
                        {&first, &second});
        FeatureList direct = gesture.features();
        FeatureList invoked;
        QVERIFY(QMetaObject::invokeMethod(&gesture, "features",
                                          Q_RETURN_ARG(QQmlListProperty<vellix::gesture::Feature>, invoked)));
        for (FeatureList *list : {&direct, &invoked}) {
            QCOMPARE(list->object, &gesture);
            QCOMPARE(list->count(list), 2);
            QCOMPARE(list->at(list, 0), &first);
            QCOMPARE(list->at(list, 1), &second);
            QVERIFY(!list->append && !list->clear && !list->replace && !list->removeLast);
        }
    }

    void properties_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("type");
        QTest::newRow("id") << 0 << "QString";
        QTest::newRow("modes") << 1 << "QStringList";
        QTest::newRow("kind") << 2 << "Kind";
        QTest::newRow("zone") << 3 << "QRectF";
        QTest::newRow("direction") << 4 << "Direction";
        QTest::newRow("availableActions") << 5 << "QList<vellix::gesture::Action*>";
        QTest::newRow("defaultAction") << 6 << "vellix::gesture::Action*";
        QTest::newRow("actionTree") << 7 << "vellix::gesture::ActionProxyNode*";
        QTest::newRow("currentAction") << 8 << "vellix::gesture::Action*";
        QTest::newRow("section") << 9 << "QString";
        QTest::newRow("features") << 10 << "QQmlListProperty<vellix::gesture::Feature>";
        QTest::newRow("supported") << 11 << "bool";
    }

    void properties()
    {
        QFETCH(int, index);
        const QByteArray name = QTest::currentDataTag();
        const QMetaObject &meta = Gesture::staticMetaObject;
        QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 12);
        const QMetaProperty property = meta.property(meta.propertyOffset() + index);
        QCOMPARE(QByteArray(property.name()), name);
        QTEST(QString::fromLatin1(property.typeName()), "type");
        QCOMPARE(property.isWritable(), name == "currentAction");

        const QMetaMethod signal = property.notifySignal();
        QCOMPARE(signal.methodIndex(), meta.methodOffset() + index);
        QCOMPARE(signal.name(), name + "Changed");
        QCOMPARE(signal.parameterNames(), QList<QByteArray>{"value"});
    }

    void propertiesAreReadThroughVariants()
    {
        QObject parent;
        Action *a = newAction("a");
        Action *b = newAction("b");
        const Gesture *gesture = withActions({a, b}, b, nullptr, &parent);
        QCOMPARE(gesture->property("kind").toInt(), 2);
        QCOMPARE(gesture->property("direction").toInt(), 0);
        QCOMPARE(gesture->property("zone"), QVariant(leftZone));
        QCOMPARE(gesture->property("currentAction").value<Action *>(), b);
        QCOMPARE(gesture->property("actionTree").value<ActionProxyNode *>(), gesture->actionTree());
        QCOMPARE(gesture->property("section").toString(), gesture->section());
        QCOMPARE(gesture->property("supported"), QVariant(true));
        const QVariant available = gesture->property("availableActions");
        QVERIFY(available.canConvert<QVariantList>());
        const QSequentialIterable entries = available.value<QSequentialIterable>();
        QCOMPARE(entries.size(), 2);
        QCOMPARE(entries.at(0).value<Action *>(), a);
        QCOMPARE(entries.at(1).value<Action *>(), b);
    }

    void dump_data()
    {
        QTest::addColumn<int>("indent");
        QTest::addColumn<bool>("full");
        QTest::addColumn<bool>("plain");
        QTest::addColumn<QString>("expected");
        QTest::newRow("with actions")
                << 1 << true << false
                << "   gesture( \"id\" ): vellix::gesture::Gesture::Swipe : QRectF(0,0.2 0.25x0.6) : "
                   "vellix::gesture::Gesture::ToLeft \n "
                   "     defaultAction:\n "
                   "       action:  \"d\" : (\"D\") \n "
                   "     currentAction:\n "
                   "       action:  \"menu/c\" : (\"Menu\", \"C\") \n "
                   "\n "
                   "     availableActions:\n "
                   "       action:  \"menu/c\" : (\"Menu\", \"C\") \n "
                   "       null\n "
                   "     actionTree:\n "
                   "       node: \".\" : \"\" : \"null\" 0 \n "
                   "           node: \"menu\" : \"Menu\" : \"menu/c\" 0 \n "
                   "               node: \"c\" : \"C\" : \"menu/c\" 1 \n ";
        QTest::newRow("without actions")
                << 0 << false << false
                << " gesture( \"id\" ): vellix::gesture::Gesture::Swipe : QRectF(0,0.2 0.25x0.6) : "
                   "vellix::gesture::Gesture::ToLeft \n "
                   "   defaultAction:\n "
                   "     null\n "
                   "   currentAction:\n "
                   "     null\n "
                   "   availableActions:\n "
                   "   actionTree:\n "
                   "     null\n ";
        QTest::newRow("the stream's spacing and quoting")
                << 0 << false << true
                << "gesture(id):vellix::gesture::Gesture::Swipe:QRectF(0,0.2 0.25x0.6):"
                   "vellix::gesture::Gesture::ToLeft\n"
                   "  defaultAction:\n"
                   "    null\n"
                   "  currentAction:\n"
                   "    null\n"
                   "  availableActions:\n"
                   "  actionTree:\n"
                   "    null\n";
    }

    void dump()
    {
        QFETCH(int, indent);
        QFETCH(bool, full);
        QFETCH(bool, plain);
        QObject parent;
        Action *current = full ? newAction("menu/c", {QStringLiteral("Menu"), QStringLiteral("C")}) : nullptr;
        Action *byDefault = full ? newAction("d", {QStringLiteral("D")}) : nullptr;
        Gesture *gesture = withActions(full ? Actions{current, nullptr} : Actions(), byDefault, current, &parent);
        const QString text = debugText([&](QDebug &out) {
            if (plain)
                out.nospace().noquote();
            gesture->dump(out, indent);
        });
        QTEST(text, "expected");
    }
};

QTEST_GUILESS_MAIN(tst_Gesture)
#include "tst_gesture.moc"
