#include "testing.h"

#include <gesture_api/configuration.h>
#include <gesture_api/gestureservice.h>

#include <QHash>
#include <QPointer>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <algorithm>
#include <memory>
#include <vector>

using namespace vellix::gesture;
using GestureList = GestureService::GestureList;

static Gesture *newGesture(const QList<Action *> &available, Action *defaultAction = nullptr,
                           Action *currentAction = nullptr, QObject *parent = nullptr)
{
    return new Gesture(QStringLiteral("g"), {}, Gesture::Tap, Gesture::wholeZone, Gesture::NoDirection, available,
                       defaultAction, currentAction, {}, parent);
}

static Action *newAction(const char *path)
{
    return new Action(QString::fromLatin1(path), {}, {});
}

static bool uses(const Gesture &gesture, Action *action)
{
    return gesture.defaultAction() == action || gesture.currentAction() == action
            || gesture.availableActions().contains(action);
}

namespace {
struct Model
{
    QList<QPointer<Action>> actions;
    QList<Gesture *> gestures; // in the order of their creation
    QHash<Action *, Gesture *> owners;

    QList<Action *> living() const
    {
        QList<Action *> found;
        for (const QPointer<Action> &action : actions) {
            if (action)
                found.append(action);
        }
        return found;
    }

    void keepLiving(QList<Action *> *list) const
    {
        const QList<Action *> known = living();
        const auto isDead = [&known](Action *action) { return action && !known.contains(action); };
        if (std::any_of(list->cbegin(), list->cend(), isDead))
            list->erase(std::remove_if(list->begin(), list->end(), isDead), list->end());
    }

    Gesture *anyGesture(QRandomGenerator &random) const { return gestures.at(random.bounded(gestures.size())); }

    void add(Gesture *gesture)
    {
        gestures.append(gesture);
        for (Action *action : living()) {
            if (uses(*gesture, action))
                owners[action] = gesture;
        }
    }

    void destroy(Gesture *gesture)
    {
        gestures.removeOne(gesture);
        QList<Action *> orphans;
        for (Action *action : living()) {
            if (owners.value(action) != gesture)
                continue;
            const auto heir = std::find_if(gestures.crbegin(), gestures.crend(),
                                           [action](const Gesture *user) { return uses(*user, action); });
            if (heir == gestures.crend())
                orphans.append(action);
            else
                owners[action] = *heir;
        }
        delete gesture;
        for (Action *orphan : qAsConst(orphans))
            QVERIFY(!living().contains(orphan));
    }

    void verify() const
    {
        const QList<Action *> known = living();
        for (Action *action : known)
            QCOMPARE(action->parent(), owners.value(action));
        for (const Gesture *gesture : gestures) {
            QVERIFY(!gesture->currentAction() || known.contains(gesture->currentAction()));
            QVERIFY(!gesture->defaultAction() || known.contains(gesture->defaultAction()));
            for (Action *action : gesture->availableActions())
                QVERIFY(!action || known.contains(action));
        }
    }
};
}

class tst_Ownership : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastGestureMadeIsTheParent()
    {
        Action *action = newAction("a");
        const std::unique_ptr<Gesture> first(newGesture({action}));
        QCOMPARE(action->parent(), first.get());
        const std::unique_ptr<Gesture> second(newGesture({}, action));
        QCOMPARE(action->parent(), second.get());
        const std::unique_ptr<Gesture> third(newGesture({}, nullptr, action));
        QCOMPARE(action->parent(), third.get());
    }

    void actionPassesToASurvivor_data()
    {
        QTest::addColumn<QString>("use");
        QTest::newRow("available") << "available";
        QTest::newRow("default") << "default";
        QTest::newRow("current") << "current";
        QTest::newRow("taken over as current later") << "later";
    }

    void actionPassesToASurvivor()
    {
        QFETCH(QString, use);
        const QPointer<Action> action = newAction("a");
        auto *survivor = use == QLatin1String("available") ? newGesture({action})
                : use == QLatin1String("default")          ? newGesture({}, action, newAction("other"))
                : use == QLatin1String("current")          ? newGesture({}, nullptr, action)
                                                           : newGesture({});
        auto *owner = newGesture({action});
        if (use == QLatin1String("later"))
            survivor->setCurrentAction(action);
        QCOMPARE(action->parent(), owner);
        delete owner;
        QVERIFY(action);
        QCOMPARE(action->parent(), survivor);
        delete survivor;
        QVERIFY(!action);
    }

    void unusedActionDiesWithItsOwner()
    {
        const QPointer<Action> action = newAction("a");
        const std::unique_ptr<Gesture> other(newGesture({}));
        auto *owner = newGesture({action});
        other->setCurrentAction(action);
        other->setCurrentAction(nullptr); // no longer a user
        delete owner;
        QVERIFY(!action);
    }

    void childThatNoGestureUsesDiesWithItsParent()
    {
        auto *gesture = newGesture({});
        const QPointer<Action> child = new Action(gesture);
        delete gesture;
        QVERIFY(!child);
    }

    void earlierUserDyingFirstChangesNothing()
    {
        const QPointer<Action> action = newAction("a");
        auto *first = newGesture({action, action}, action);
        const std::unique_ptr<Gesture> second(newGesture({action}));
        delete first;
        QVERIFY(action);
        QCOMPARE(action->parent(), second.get());
    }

    void settingAndMergingChangeNoOwner()
    {
        Action *action = newAction("a");
        const std::unique_ptr<Gesture> owner(newGesture({action}, action));
        const std::unique_ptr<Gesture> other(newGesture({}));
        other->setCurrentAction(action);
        QCOMPARE(action->parent(), owner.get());
        other->setCurrentAction(nullptr);
        QVERIFY(other->merge(owner.get()));
        QCOMPARE(other->currentAction(), action);
        QCOMPARE(action->parent(), owner.get());
    }

    // It is not offered, and no longer current: only the default action refers to it.
    void defaultThatIsNotChosenStays()
    {
        Action *action = newAction("a");
        const std::unique_ptr<Gesture> gesture(newGesture({newAction("b")}, action));
        std::unique_ptr<Gesture> owner(newGesture({}, action));
        QCOMPARE(action->parent(), owner.get());
        gesture->setCurrentAction(gesture->availableActions().first());
        owner.reset();
        QCOMPARE(action->parent(), gesture.get());
        QCOMPARE(gesture->defaultAction(), action);
    }

    void deadActionIsForgotten()
    {
        Action *action = newAction("a");
        const std::unique_ptr<Gesture> gesture(newGesture({action, newAction("b")}, action));
        QSignalSpy changed(gesture.get(), &Gesture::currentActionChanged);
        ActionProxyNode *leaf = gesture->actionTree()->findChildNode(QStringLiteral("a"));
        QCOMPARE(leaf->action(), action);
        delete action;
        QCOMPARE(gesture->availableActions().size(), 1);
        QCOMPARE(gesture->defaultAction(), nullptr);
        QCOMPARE(gesture->currentAction(), nullptr);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(leaf->action(), nullptr);
    }

    void deadActionThatIsNotCurrentChangesNoCurrentOne()
    {
        Action *available = newAction("a");
        Action *byDefault = newAction("b");
        Action *current = newAction("c");
        const std::unique_ptr<Gesture> gesture(newGesture({available, byDefault, current}, byDefault, current));
        QSignalSpy changed(gesture.get(), &Gesture::currentActionChanged);
        delete available;
        QCOMPARE(gesture->defaultAction(), byDefault);
        delete byDefault;
        QCOMPARE(gesture->defaultAction(), nullptr);
        QCOMPARE(gesture->currentAction(), current);
        QCOMPARE(gesture->availableActions(), QList<Action *>{current});
        QCOMPARE(changed.size(), 0);
    }

    void deadActionThatWasOfferedTwiceIsForgottenTwice()
    {
        Action *action = newAction("a");
        Action *other = newAction("b");
        const std::unique_ptr<Gesture> gesture(newGesture({action, other, action}, action));
        delete action;
        QCOMPARE(gesture->availableActions(), QList<Action *>{other});
    }

    void actionPassesOnFromUserToUser()
    {
        const QPointer<Action> action = newAction("a");
        QList<Gesture *> gestures;
        for (int i = 0; i < 5; ++i)
            gestures.append(newGesture({action}));
        delete gestures.takeAt(2); // in between
        delete gestures.takeFirst();
        while (!gestures.isEmpty()) {
            QVERIFY(action);
            QCOMPARE(action->parent(), gestures.last());
            delete gestures.takeLast();
        }
        QVERIFY(!action);
    }

    void whoHearsOfADeadActionMayDestroyItsOtherUsers()
    {
        Action *action = newAction("a");
        std::unique_ptr<Gesture> first(newGesture({action}, action));
        const std::unique_ptr<Gesture> second(newGesture({action}, action));
        const std::unique_ptr<Gesture> third(newGesture({action}, action));
        connect(third.get(), &Gesture::currentActionChanged, [&first] { first.reset(); });
        delete action;
        QVERIFY(!first);
        QCOMPARE(second->currentAction(), nullptr);
    }

    // For the leak checker.
    void failedLoadWithoutAParentLeavesNothing()
    {
        const QVariant document = testing::json(R"({
            "actions": [{"path": "a", "title": "A"}, {"path": "unused", "title": "U"}],
            "gestures": [{"kind": "tap", "zone": "whole", "defaultAction": "a"}, {"kind": "tap"}]})");
        QVERIFY(Configuration::fromVariant(document, nullptr, GestureService::predefinedZones, {}).isLeft());
    }

    void loadWithoutAParentBelongsToTheCaller()
    {
        const QVariant document = testing::json(R"({
            "actions": [{"path": "a", "title": "A"}],
            "gestures": [{"kind": "tap", "zone": "whole", "defaultAction": "a"}]})");
        const auto gestures = Configuration::fromVariant(document, nullptr, GestureService::predefinedZones, {});
        VERIFY_RIGHT(gestures);
        const std::unique_ptr<Gesture> gesture(gestures.right().at(0));
        QCOMPARE(gesture->parent(), nullptr);
        QCOMPARE(gesture->currentAction()->path(), QStringLiteral("a"));
    }

    void treeIsReleasedLaterThanItsGesture()
    {
        auto *gesture = newGesture({newAction("a/b")});
        const QPointer<ActionProxyNode> tree = gesture->actionTree();
        QCOMPARE(tree->parent(), nullptr);
        const QPointer<ActionProxyNode> leaf =
                tree->findChildNode(QStringLiteral("a"))->findChildNode(QStringLiteral("b"));
        delete gesture;
        QVERIFY(tree);
        QCOMPARE(leaf->action(), nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!tree);
        QVERIFY(!leaf);
    }

    void destroyedTreeIsNotTouchedAgain()
    {
        auto *gesture = newGesture({newAction("a")});
        delete gesture->actionTree();
        QCOMPARE(gesture->actionTree(), nullptr);
        delete gesture;
    }

    void passesToTheUserMadeLastHoweverItCameToBeOne()
    {
        const QPointer<Action> action = newAction("a");
        const std::unique_ptr<Gesture> first(newGesture({}));
        const std::unique_ptr<Gesture> second(newGesture({}));
        const std::unique_ptr<Gesture> third(newGesture({}));
        auto *owner = newGesture({action});
        third->setCurrentAction(action);
        first->setCurrentAction(action);
        second->setCurrentAction(action);
        delete owner;
        QCOMPARE(action->parent(), third.get());
    }

    void cloneOfAServiceOwnsTheActions()
    {
        Action *shared = newAction("shared");
        Action *alone = newAction("alone");
        const QList<Gesture *> made{newGesture({shared, alone}), nullptr, newGesture({shared})};
        const std::unique_ptr<GestureService> source(new GestureService(ApplicationPaths({}, {}, {}), nullptr, true,
                                                                        GestureList([made] { return made; }), false));
        qDeleteAll(made);
        QCOMPARE(shared->parent(), source->gestureList().last());
        std::unique_ptr<GestureService> clone(source->clone());
        QCOMPARE(alone->parent(), clone->gestureList().first());
        QCOMPARE(shared->parent(), clone->gestureList().last());
        clone.reset();
        QCOMPARE(alone->parent(), source->gestureList().first());
        QCOMPARE(shared->parent(), source->gestureList().last());
    }

    void sizes_data()
    {
        QTest::addColumn<int>("gestures");
        QTest::addColumn<int>("actions"); // of each gesture
        QTest::addColumn<QString>("order");
        for (const char *order : {"the source first", "the clone first", "the clone of the clone first"})
            QTest::addRow("120000 gestures of 10 actions, %s", order) << 120000 << 10 << QString::fromLatin1(order);
        for (const char *order : {"from the front", "from the back", "in any order"})
            QTest::addRow("300 gestures of 3000 actions, %s", order) << 300 << 3000 << QString::fromLatin1(order);
    }

    // Seconds, if the time grows with gestures times actions; faster growth exceeds the test's time limit.
    void sizes()
    {
        QFETCH(int, gestures);
        QFETCH(int, actions);
        QFETCH(QString, order);
        QRandomGenerator random(1);
        QList<Action *> all;
        for (int i = 0; i < actions; ++i)
            all.append(newAction("a"));
        QList<Gesture *> made;
        for (int i = 0; i < gestures; ++i) {
            made.append(newGesture(all, all.first()));
            std::rotate(all.begin(), all.begin() + random.bounded(actions), all.end());
        }
        const QPointer<Action> action = all.first();
        QList<GestureService *> services{new GestureService(ApplicationPaths({}, {}, {}), nullptr, true,
                                                            GestureList([made] { return made; }), false)};
        qDeleteAll(made);
        for (int i = 0; i < 2; ++i)
            services.append(services.last()->clone());
        QCOMPARE(action->parent(), services.last()->gestureList().last());

        if (order == QLatin1String("the clone first"))
            services.swapItemsAt(0, 1);
        else if (order == QLatin1String("the clone of the clone first"))
            std::reverse(services.begin(), services.end());
        for (GestureService *service : qAsConst(services)) {
            QVERIFY(action);
            QList<Gesture *> list = service->gestureList();
            if (order == QLatin1String("from the back"))
                std::reverse(list.begin(), list.end());
            else if (order == QLatin1String("in any order"))
                std::shuffle(list.begin(), list.end(), random);
            if (gestures < actions)
                qDeleteAll(list);
            delete service;
        }
        QVERIFY(!action);
    }

    // Gestures with one list: the rows above have lists of their own.
    void sharedListForgetsADeadAction()
    {
        QList<Action *> group;
        for (const char *path : {"a", "b", "c", "a", "d", "e"})
            group.append(newAction(path));
        group.append(nullptr);
        group.append(group.first());
        const std::unique_ptr<Gesture> first(newGesture(group, group.at(1)));
        const std::unique_ptr<Gesture> second(newGesture(group, group.at(2), group.at(0)));
        const std::unique_ptr<Gesture> third(second->clone());
        QSignalSpy changed(second.get(), &Gesture::currentActionChanged);
        delete group.at(0);
        delete group.at(4);
        const QList<Action *> left{group.at(1), group.at(2), group.at(3), group.at(5), nullptr};
        QCOMPARE(first->availableActions(), left);
        QCOMPARE(second->availableActions(), left);
        QCOMPARE(third->availableActions(), left);
        QCOMPARE(second->currentAction(), nullptr);
        QCOMPARE(changed.size(), 1);
        const std::unique_ptr<Gesture> fourth(newGesture(first->availableActions()));
        delete group.at(5);
        QCOMPARE(fourth->availableActions().size(), 4);
        QCOMPARE(first->availableActions().size(), 4);
    }

    void whoHearsOfADeadActionMaySeeAndUseTheSharedList()
    {
        QList<Action *> group;
        for (const char *path : {"a", "b", "c", "d", "e", "f"})
            group.append(newAction(path));
        std::unique_ptr<Gesture> first(newGesture(group, group.at(0)));
        const std::unique_ptr<Gesture> second(newGesture(group, group.at(0)));
        std::vector<std::unique_ptr<Gesture>> more;
        connect(second.get(), &Gesture::currentActionChanged, [&] {
            QCOMPARE(first->availableActions().size(), 5);
            more.emplace_back(newGesture(group)); // a list with the dead action in it
            more.emplace_back(newGesture(group));
            more.emplace_back(first->clone());
            first.reset();
        });
        delete group.at(0);
        QCOMPARE(more.size(), std::size_t(3));
        for (const auto &gesture : more)
            QCOMPARE(gesture->availableActions(), group.mid(1));
        QCOMPARE(more.at(2)->defaultAction(), nullptr);
        QCOMPARE(group.at(1)->parent(), more.at(2).get());
    }

    // Beside a model that knows, for each action, the order in which gestures were made with it.
    void anyOrderOfSharingAndDestroying()
    {
        for (quint32 seed = 0; seed < 1000; ++seed) {
            QRandomGenerator random(seed);
            Model model;
            for (int i = 0; i < 9; ++i)
                model.actions.append(newAction(qPrintable(QString::number(i))));
            const QList<Action *> all = model.living();
            const QList<QList<Action *>> lists{all, all.mid(0, 6), all.mid(3), all.mid(2, 2),
                                               all.mid(4) + QList<Action *>{nullptr, all.at(5), all.at(1)}};
            for (int step = 0; step < 40; ++step) {
                const int kind = random.bounded(10);
                if (kind < 4 || model.gestures.isEmpty()) {
                    QList<Action *> list = lists.at(random.bounded(lists.size()));
                    model.keepLiving(&list); // shared with the others as long as all live
                    const QList<Action *> known = model.living();
                    if (known.isEmpty())
                        break;
                    model.add(newGesture(list, known.at(random.bounded(known.size())),
                                         random.bounded(2) ? known.at(random.bounded(known.size())) : nullptr));
                } else if (kind < 6) {
                    model.add(model.anyGesture(random)->clone());
                } else if (kind < 7) {
                    const QList<Action *> known = model.living();
                    if (!known.isEmpty())
                        model.anyGesture(random)->setCurrentAction(known.at(random.bounded(known.size())));
                } else if (kind < 9) {
                    model.destroy(model.anyGesture(random));
                } else {
                    delete model.actions.at(random.bounded(model.actions.size())).data();
                }
                model.verify();
                if (QTest::currentTestFailed())
                    QFAIL(qPrintable(QStringLiteral("seed %1, step %2").arg(seed).arg(step)));
            }
            qDeleteAll(model.gestures);
            for (const QPointer<Action> &action : qAsConst(model.actions))
                QVERIFY(!action || !action->parent()); // no gesture has had it
            qDeleteAll(model.living());
        }
    }

    // More lists than the library looks at when a gesture is made.
    void manyListsOfOneAction()
    {
        QRandomGenerator random(1);
        Model model;
        for (int i = 0; i < 45; ++i)
            model.actions.append(newAction(qPrintable(QString::number(i))));
        const QList<Action *> all = model.living();
        const auto add = [&](int place, Action *byDefault) {
            model.add(newGesture(QList<Action *>{all.first()} + all.mid(place, 4), byDefault));
        };
        for (int round = 0; round < 3; ++round) {
            add(1, all.first());
            add(1, all.first());
            for (int place = 2; place + 4 <= all.size(); ++place) {
                add(place, nullptr);
                add(place, nullptr);
            }
        }
        model.verify();
        while (!model.gestures.isEmpty() && !QTest::currentTestFailed()) {
            model.destroy(model.anyGesture(random));
            model.verify();
        }
        QVERIFY(model.living().isEmpty());
    }

    // A settings screen may clone, edit, merge back and destroy in any order.
    void anyOrderOfCloningEditingMergingAndDestroying()
    {
        for (quint32 seed = 0; seed < 500; ++seed) {
            QRandomGenerator random(seed);
            QList<QPointer<Action>> actions;
            QList<Gesture *> made;
            for (int i = 0; i < 5; ++i)
                actions.append(newAction(qPrintable(QString::number(i))));
            for (int i = 0; i < 4; ++i)
                made.append(newGesture({actions.at(i), actions.at(i + 1)}, actions.at(i)));
            const ApplicationPaths paths({}, {}, {});
            QList<GestureService *> services{
                    new GestureService(paths, nullptr, true, GestureList([made] { return made; }), false)};
            qDeleteAll(made);

            for (int step = 0; step < 12 && !services.isEmpty(); ++step) {
                GestureService *one = services.at(random.bounded(services.size()));
                GestureService *other = services.at(random.bounded(services.size()));
                switch (random.bounded(5)) {
                case 0: services.append(one->clone()); break;
                case 1: {
                    Gesture *gesture = one->gestureList().at(random.bounded(4));
                    gesture->setCurrentAction(gesture->availableActions().at(random.bounded(2)));
                    break;
                }
                case 2: one->fastMerge(other); break;
                case 3: one->gestureList().at(0)->actionTree(); break;
                default:
                    services.removeOne(one);
                    delete one;
                    break;
                }
                for (const QPointer<Action> &action : qAsConst(actions))
                    QCOMPARE(action.isNull(), services.isEmpty());
                for (const GestureService *service : qAsConst(services)) {
                    for (const Gesture *gesture : service->gestureList()) {
                        QCOMPARE(gesture->availableActions().size(), 2);
                        QVERIFY(!gesture->currentAction()->path().isEmpty());
                    }
                }
            }
            qDeleteAll(services);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            for (const QPointer<Action> &action : qAsConst(actions))
                QVERIFY(!action);
        }
    }
};

QTEST_GUILESS_MAIN(tst_Ownership)
#include "tst_ownership.moc"
