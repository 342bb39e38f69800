#include "testing.h"

#include <gesture_api/action.h>

#include <QPointer>
#include <QThread>

#include <memory>

using namespace vellix::gesture;
using testing::debugText;

Q_DECLARE_METATYPE(QVector<QString>)

// Actions written as "PATH=TITLE|TITLE"; "null" is no action.
static QList<Action *> actionsOf(const QStringList &texts, QObject *parent)
{
    QList<Action *> actions;
    for (const QString &text : texts) {
        const QString path = text.section(QLatin1Char('='), 0, 0);
        const QStringList titles = text.section(QLatin1Char('='), 1).split(QLatin1Char('|'), Qt::SkipEmptyParts);
        actions.append(text == QLatin1String("null") ? nullptr : new Action(path, titles, {}, parent));
    }
    return actions;
}

// Every node below one as "DEPTH LEVEL SEGMENT TITLE ACTION", parents first.
static QStringList nodesBelow(const ActionProxyNode *node, int depth = 1)
{
    QStringList lines;
    for (const ActionProxyNode *child : node->childNodeList()) {
        const QString action = child->action() ? child->action()->path() : QStringLiteral("null");
        lines.append(QStringLiteral("%1 %2 '%3' '%4' '%5'")
                             .arg(QString::number(depth), QString::number(child->level()), child->pathSegment(),
                                  child->title(), action));
        lines += nodesBelow(child, depth + 1);
    }
    return lines;
}

static QStringList lines(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

static QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

static ActionProxyNode *newNode(const char *segment, QObject *parent = nullptr)
{
    return new ActionProxyNode(0, QString::fromUtf8(segment), QString(), static_cast<Action *>(nullptr), parent);
}

// The tree of most tests.
struct ReaderTree
{
    QObject owner;
    QList<Action *> actions =
            actionsOf({QStringLiteral("reader/open=Reader|Open"), QStringLiteral("reader/close=Reader|Close")}, &owner);
    ActionProxyNode *root = ActionProxyNode::constructTree(actions, &owner);
    ActionProxyNode *reader = root->findChildNode(QStringLiteral("reader"));
    ActionProxyNode *open = reader->findChildNode(QStringLiteral("open"));
    ActionProxyNode *close = reader->findChildNode(QStringLiteral("close"));
};

class tst_ActionTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construct_data()
    {
        QTest::addColumn<QStringList>("actions");
        QTest::addColumn<QStringList>("nodes");
        QTest::newRow("leading segments are shared") << words("reader/open=Reader|Open reader/close=Reader|Close")
                                                     << lines("1 0 'reader' 'Reader' 'reader/open'\n"
                                                              "2 1 'open' 'Open' 'reader/open'\n"
                                                              "2 1 'close' 'Close' 'reader/close'");
        QTest::newRow("level is the segment's index")
                << words("a/b/c=A|B|C") << lines("1 0 'a' 'A' 'a/b/c'\n2 1 'b' 'B' 'a/b/c'\n3 2 'c' 'C' 'a/b/c'");
        QTest::newRow("fewer titles than segments")
                << words("a/b/c=A") << lines("1 0 'a' 'A' 'a/b/c'\n2 1 'b' '' 'a/b/c'\n3 2 'c' '' 'a/b/c'");
        QTest::newRow("more titles than segments") << words("a=A|B") << lines("1 0 'a' 'A' 'a'");
        QTest::newRow("no titles") << words("a") << lines("1 0 'a' '' 'a'");
        QTest::newRow("empty path") << words("=A") << lines("1 0 '' 'A' ''");
        QTest::newRow("leading separator") << words("/a=A|B") << lines("1 0 '' 'A' '/a'\n2 1 'a' 'B' '/a'");
        QTest::newRow("two separators") << words("a//b=A|B|C")
                                        << lines("1 0 'a' 'A' 'a//b'\n2 1 '' 'B' 'a//b'\n3 2 'b' 'C' 'a//b'");
        QTest::newRow("trailing separator") << words("a/=A|B") << lines("1 0 'a' 'A' 'a/'\n2 1 '' 'B' 'a/'");
        QTest::newRow("only a separator") << words("/=A|B") << lines("1 0 '' 'A' '/'\n2 1 '' 'B' '/'");
        QTest::newRow("a full stop is a segment like any other")
                << words("./.=A|B") << lines("1 0 '.' 'A' './.'\n2 1 '.' 'B' './.'");
        QTest::newRow("case counts") << words("a=1 A=2") << lines("1 0 'a' '1' 'a'\n1 0 'A' '2' 'A'");
        QTest::newRow("first appearance orders") << words("b=1 a/x=2|3 b/y=4|5 c=6 a/w=7|8")
                                                 << lines("1 0 'b' '1' 'b'\n"
                                                          "2 1 'y' '5' 'b/y'\n"
                                                          "1 0 'a' '2' 'a/x'\n"
                                                          "2 1 'x' '3' 'a/x'\n"
                                                          "2 1 'w' '8' 'a/w'\n"
                                                          "1 0 'c' '6' 'c'");
        QTest::newRow("a later action changes no node that it passes")
                << words("a/b=A|B a/c=Other|C") << lines("1 0 'a' 'A' 'a/b'\n2 1 'b' 'B' 'a/b'\n2 1 'c' 'C' 'a/c'");
        QTest::newRow("nor one that it ends at")
                << words("a/b=A|B a=Other") << lines("1 0 'a' 'A' 'a/b'\n2 1 'b' 'B' 'a/b'");
        QTest::newRow("one segment below different parents")
                << words("a/x=A|X b/x=B|Y")
                << lines("1 0 'a' 'A' 'a/x'\n2 1 'x' 'X' 'a/x'\n1 0 'b' 'B' 'b/x'\n2 1 'x' 'Y' 'b/x'");
        QTest::newRow("null entries are skipped")
                << words("null a=A null b=B null") << lines("1 0 'a' 'A' 'a'\n1 0 'b' 'B' 'b'");
    }

    void construct()
    {
        QFETCH(QStringList, actions);
        QObject owner;
        QObject parent;
        const ActionProxyNode *root = ActionProxyNode::constructTree(actionsOf(actions, &owner), &parent);
        QVERIFY(root);
        QCOMPARE(root->parent(), &parent);
        QCOMPARE(root->level(), 0);
        QCOMPARE(root->pathSegment(), QStringLiteral("."));
        QCOMPARE(root->title(), QString());
        QVERIFY(!root->action());
        QTEST(nodesBelow(root), "nodes");
    }

    void withoutActionsThereIsNoTree_data()
    {
        QTest::addColumn<QStringList>("actions");
        QTest::newRow("empty list") << QStringList();
        QTest::newRow("null entries only") << words("null null");
    }

    void withoutActionsThereIsNoTree()
    {
        QFETCH(QStringList, actions);
        QObject parent;
        QVERIFY(!ActionProxyNode::constructTree(actionsOf(actions, &parent), &parent));
        QCOMPARE(parent.children(), QObjectList());
    }

    void ofOnePathTheFirstActionHasTheNode()
    {
        QObject owner;
        const QList<Action *> actions = actionsOf(words("a=1 a=2"), &owner);
        const ActionProxyNode *root = ActionProxyNode::constructTree(actions, &owner);
        QCOMPARE(root->childNodeList().size(), 1);
        QCOMPARE(root->childNodeList().first()->action(), actions.first());
        QCOMPARE(root->childNodeList().first()->title(), QStringLiteral("1"));
    }

    void aNodeOwnsItsChildrenButNoAction()
    {
        ReaderTree tree;
        const QPointer<ActionProxyNode> reader = tree.reader;
        const QPointer<ActionProxyNode> open = tree.open;
        QCOMPARE(tree.reader->parent(), tree.root);
        QCOMPARE(tree.open->parent(), tree.reader);
        QCOMPARE(tree.actions.first()->parent(), &tree.owner);
        delete tree.root;
        QVERIFY(!reader && !open);
        QCOMPARE(tree.owner.children().size(), tree.actions.size());
    }

    void withoutAParentTheRootIsTheCallers()
    {
        QObject owner;
        const std::unique_ptr<ActionProxyNode> root(ActionProxyNode::constructTree(actionsOf(words("a=A"), &owner)));
        QVERIFY(!root->parent());
    }

    void aSecondTreeStandsApart()
    {
        ReaderTree tree;
        const ActionProxyNode *second = ActionProxyNode::constructTree(tree.actions, &tree.owner);
        QVERIFY(second != tree.root);
        QVERIFY(second->childNodeList().first() != tree.reader);
        QCOMPARE(nodesBelow(second), nodesBelow(tree.root));
        delete tree.root;
        QCOMPARE(nodesBelow(second).size(), 3);
    }

    void findChildNode()
    {
        ReaderTree tree;
        QCOMPARE(tree.root->findChildNode(QStringLiteral("reader")), tree.root->childNodeList().first());
        QVERIFY(!tree.root->findChildNode(QStringLiteral("Reader")));
        QVERIFY(!tree.root->findChildNode(QStringLiteral("open"))); // a child's child
        QVERIFY(!tree.root->findChildNode(QString()));
        QCOMPARE(nodesBelow(tree.root).size(), 3);
    }

    void aKnownChildIsFoundUnchanged()
    {
        ReaderTree tree;
        Action other(QStringLiteral("other"), {}, {});
        const QStringList before = nodesBelow(tree.root);
        QCOMPARE(tree.root->findChildNodeOrInsert(7, QStringLiteral("reader"), QStringLiteral("Other"), &other),
                 tree.reader);
        QCOMPARE(nodesBelow(tree.root), before);
    }

    void anUnknownChildIsMadeLast()
    {
        ReaderTree tree;
        Action other(QStringLiteral("other"), {}, {});
        ActionProxyNode *made =
                tree.root->findChildNodeOrInsert(7, QStringLiteral("Reader"), QStringLiteral("Other"), &other);
        QCOMPARE(made->parent(), tree.root);
        QCOMPARE(made->level(), 7);
        QCOMPARE(made->pathSegment(), QStringLiteral("Reader"));
        QCOMPARE(made->title(), QStringLiteral("Other"));
        QCOMPARE(made->action(), &other);
        QCOMPARE(made->childNodeList(), QList<ActionProxyNode *>());
        QCOMPARE(tree.root->childNodeList(), QList<ActionProxyNode *>({tree.reader, made}));
    }

    void ofOneSegmentTheFirstChildIsFound()
    {
        ActionProxyNode *first = newNode("a");
        ActionProxyNode *second = newNode("a");
        ActionProxyNode root(0, QStringLiteral("."), QString(), {nullptr, first, second});
        QCOMPARE(root.findChildNode(QStringLiteral("a")), first);
        QCOMPARE(root.findChildNodeOrInsert(0, QStringLiteral("a"), QString(), nullptr), first);
    }

    void aNodeOfANodeListBecomesTheirParent()
    {
        QObject parent;
        QObject formerParent;
        ActionProxyNode *child = newNode("a", &formerParent);
        ActionProxyNode *orphan = newNode("b");
        const QList<ActionProxyNode *> children{child, nullptr, orphan};
        auto *node = new ActionProxyNode(3, QStringLiteral("segment"), QStringLiteral("Title"), children, &parent);
        QCOMPARE(node->parent(), &parent);
        QCOMPARE(node->level(), 3);
        QCOMPARE(node->pathSegment(), QStringLiteral("segment"));
        QCOMPARE(node->title(), QStringLiteral("Title"));
        QVERIFY(!node->action());
        QCOMPARE(node->childNodeList(), children);
        QCOMPARE(child->parent(), node);
        QCOMPARE(orphan->parent(), node);
        QCOMPARE(formerParent.children(), QObjectList());
        const QPointer<ActionProxyNode> watched = orphan;
        delete node;
        QVERIFY(!watched);
    }

    void aNodeTakesWhatItIsGiven()
    {
        QObject parent;
        Action action;
        const auto *node = new ActionProxyNode(-1, QStringLiteral("a/b"), QStringLiteral("T"), &action, &parent);
        QCOMPARE(node->parent(), &parent);
        QCOMPARE(node->level(), -1);
        QCOMPARE(node->pathSegment(), QStringLiteral("a/b"));
        QCOMPARE(node->title(), QStringLiteral("T"));
        QCOMPARE(node->action(), &action);
        QCOMPARE(node->childNodeList(), QList<ActionProxyNode *>());
        QVERIFY(!action.parent());
    }

    void path()
    {
        ReaderTree tree;
        QCOMPARE(tree.root->path(), words("."));
        QCOMPARE(tree.reader->path(), words(". reader"));
        QCOMPARE(tree.open->path(), words(". reader open"));
        // A node without a parent stands alone, whatever its segment.
        QObject parent;
        QCOMPARE(newNode("a", &parent)->path(), words("a"));
    }

    void isProperPrefix_data()
    {
        QTest::addColumn<QStringList>("ancestorPath");
        QTest::addColumn<QVector<QString>>("path");
        QTest::addColumn<bool>("expected");
        const auto row = [](const char *rule, const char *ancestorPath, const char *path, bool expected) {
            QTest::newRow(rule) << words(ancestorPath) << words(path).toVector() << expected;
        };
        row("prefix", ". a", ". a b", true);
        row("prefix by several", ".", ". a b c", true);
        row("not itself", ". a b", ". a b", false);
        row("longer than the path", ". a b", ". a", false);
        row("longer than an empty path", ".", "", false);
        row("longer and different", "x y z", ". a", false);
        row("different at the start", "x a", ". a b", false);
        row("different at the end", ". x", ". a b", false);
        row("case counts", ". A", ". a b", false);
        row("part of a segment", ". re", ". reader open", false);
        row("empty, of a path", "", ".", true);
        row("empty, of an empty path", "", "", false);
    }

    void isProperPrefix()
    {
        QFETCH(QStringList, ancestorPath);
        QFETCH(QVector<QString>, path);
        QTEST(ActionProxyNode::isAnsestorOf(ancestorPath, path), "expected");
    }

    void isAnsestorOf_data()
    {
        QTest::addColumn<QString>("node");
        QTest::addColumn<QString>("action");
        QTest::addColumn<bool>("expected");
        QTest::newRow("root, of the first") << "root"
                                            << "reader/open" << true;
        QTest::newRow("root, of the second") << "root"
                                             << "reader/close" << true;
        QTest::newRow("root, of any action") << "root"
                                             << "elsewhere" << true;
        QTest::newRow("root, of an empty path") << "root"
                                                << "" << true;
        QTest::newRow("reader, of the first") << "reader"
                                              << "reader/open" << true;
        QTest::newRow("reader, of the second") << "reader"
                                               << "reader/close" << true;
        QTest::newRow("reader, of its own path") << "reader"
                                                 << "reader" << false;
        QTest::newRow("reader, of an empty last segment") << "reader"
                                                          << "reader/" << true;
        QTest::newRow("reader, of another branch") << "reader"
                                                   << "writer/open" << false;
        QTest::newRow("reader, of a leading separator") << "reader"
                                                        << "/reader/open" << false;
        QTest::newRow("leaf, of its own action") << "open"
                                                 << "reader/open" << false;
        QTest::newRow("leaf, of its neighbour") << "open"
                                                << "reader/close" << false;
        QTest::newRow("leaf, of a longer path") << "open"
                                                << "reader/open/page" << true;
        QTest::newRow("leaf, of a shorter path") << "open"
                                                 << "reader" << false;
    }

    void isAnsestorOf()
    {
        ReaderTree tree;
        QFETCH(QString, node);
        QFETCH(QString, action);
        const QMap<QString, ActionProxyNode *> nodes{{QStringLiteral("root"), tree.root},
                                                     {QStringLiteral("reader"), tree.reader},
                                                     {QStringLiteral("open"), tree.open}};
        Action other(action, {}, {});
        QTEST(nodes.value(node)->isAnsestorOf(&other), "expected");
        // Like a menu.
        bool answer = false;
        QVERIFY(QMetaObject::invokeMethod(nodes.value(node), "isAnsestorOf", Q_RETURN_ARG(bool, answer),
                                          Q_ARG(vellix::gesture::Action *, &other)));
        QTEST(answer, "expected");
    }

    void nothingIsBelowNoAction()
    {
        ReaderTree tree;
        QVERIFY(!tree.root->isAnsestorOf(nullptr));
    }

    void dump_data()
    {
        QTest::addColumn<QStringList>("actions");
        QTest::addColumn<int>("indent");
        QTest::addColumn<QString>("text");
        QTest::newRow("children two deeper") << words("reader/open=Reader|Open reader/close=Reader") << 0
                                             << " node: \".\" : \"\" : \"null\" 0 \n "
                                                "     node: \"reader\" : \"Reader\" : \"reader/open\" 0 \n "
                                                "         node: \"open\" : \"Open\" : \"reader/open\" 1 \n "
                                                "         node: \"close\" : \"\" : \"reader/close\" 1 \n ";
        QTest::newRow("from a given indent") << words("a=A") << 1
                                             << "   node: \".\" : \"\" : \"null\" 0 \n "
                                                "       node: \"a\" : \"A\" : \"a\" 0 \n ";
    }

    void dump()
    {
        QFETCH(QStringList, actions);
        QFETCH(int, indent);
        QObject owner;
        const ActionProxyNode *root = ActionProxyNode::constructTree(actionsOf(actions, &owner), &owner);
        QTEST(debugText([&](QDebug &out) { root->dump(out, indent); }), "text");
    }

    void dumpOfANullChildIsOneDeeper()
    {
        const ActionProxyNode node(4, QStringLiteral("a"), QStringLiteral("A"), {nullptr, newNode("b"), nullptr});
        QCOMPARE(debugText([&](QDebug &out) { node.dump(out, 1); }),
                 QStringLiteral("   node: \"a\" : \"A\" : \"null\" 4 \n "
                                "     null\n "
                                "       node: \"b\" : \"\" : \"null\" 0 \n "
                                "     null\n "));
    }

    // More levels than the stack has space for.
    void deepPathIsWalkedAndFreed()
    {
        constexpr int segments = 200000;
        const Action action(QStringLiteral("a/").repeated(segments - 1) + QLatin1Char('a'), {}, {});
        const QPointer<ActionProxyNode> root = ActionProxyNode::constructTree({const_cast<Action *>(&action)});
        QPointer<ActionProxyNode> node = root;
        while (!node->childNodeList().isEmpty())
            node = node->childNodeList().first();
        QCOMPARE(node->level(), segments - 1);
        QCOMPARE(node->path().size(), segments + 1);
        QCOMPARE(node->path().first(), QStringLiteral("."));
        QVERIFY(root->isAnsestorOf(const_cast<Action *>(&action)));
        QVERIFY(!node->isAnsestorOf(const_cast<Action *>(&action)));
        delete root;
        QVERIFY(!node);
    }

    void deepDump()
    {
        constexpr int levels = 3000;
        int lines = 0;
        const std::unique_ptr<QThread> thread(QThread::create([&lines] {
            const std::unique_ptr<ActionProxyNode> root(newNode("."));
            ActionProxyNode *node = root.get();
            for (int i = 1; i < levels; ++i)
                node = node->findChildNodeOrInsert(i, QStringLiteral("a"), QString(), nullptr);
            lines = debugText([&root](QDebug &debug) { root->dump(debug, 0); }).count(QLatin1Char('\n'));
        }));
        thread->setStackSize(256 * 1024);
        thread->start();
        thread->wait();
        QCOMPARE(lines, levels);
    }

    void subtreeIsFreedWithWhateverHangsOnIt()
    {
        QObject owner;
        ActionProxyNode *inner = newNode("inner");
        auto *root =
                new ActionProxyNode(0, QStringLiteral("."), QString(), {inner, nullptr, newNode("second")}, &owner);
        const QPointer<QObject> foreign = new QObject(inner);
        const QPointer<ActionProxyNode> below = newNode("below", foreign);
        const QPointer<ActionProxyNode> unlisted = newNode("unlisted", root);
        auto *sibling = new ActionProxyNode(0, QStringLiteral("sibling"), QString(), {newNode("last")}, root);
        connect(inner, &QObject::destroyed, [sibling] { delete sibling; });
        const QPointer<ActionProxyNode> guarded = sibling;
        delete root;
        QVERIFY(!foreign && !below && !unlisted && !guarded);
        QCOMPARE(owner.children(), QObjectList());
    }

    // Also a menu of very many entries.
    void wideTreeIsFreed()
    {
        QObject owner;
        QList<Action *> actions;
        for (int i = 0; i < 200000; ++i)
            actions.append(new Action(QString::number(i) + QStringLiteral("/a"), {}, {}, &owner));
        const std::unique_ptr<ActionProxyNode> root(ActionProxyNode::constructTree(actions));
        QCOMPARE(root->childNodeList().size(), actions.size());
    }

    void aDeadActionReadsNull()
    {
        ReaderTree tree;
        QCOMPARE(tree.open->action(), tree.actions.first());
        delete tree.actions.first();
        QVERIFY(!tree.open->action());
        QVERIFY(!tree.reader->action());
        QCOMPARE(tree.open->property("action").value<Action *>(), nullptr);
        QCOMPARE(tree.close->action(), tree.actions.last());
        QCOMPARE(debugText([&](QDebug &out) { tree.open->dump(out, 0); }),
                 QStringLiteral(" node: \"open\" : \"Open\" : \"null\" 1 \n "));
    }

    void childNodesCanBeReadOnly()
    {
        ReaderTree tree;
        QQmlListProperty<ActionProxyNode> children = tree.reader->childNodes();
        QCOMPARE(children.object, tree.reader);
        QCOMPARE(children.count(&children), 2);
        QCOMPARE(children.at(&children, 0), tree.open);
        QCOMPARE(children.at(&children, 1), tree.close);
        QVERIFY(!children.append && !children.clear && !children.replace && !children.removeLast);
        // The list itself, not a copy of it.
        tree.reader->findChildNodeOrInsert(1, QStringLiteral("page"), QString(), nullptr);
        QCOMPARE(children.count(&children), 3);
    }

    void propertiesAreReadOnly_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("level") << QVariant(1);
        QTest::newRow("pathSegment") << QVariant(QStringLiteral("open"));
        QTest::newRow("title") << QVariant(QStringLiteral("Open"));
    }

    void propertiesAreReadOnly()
    {
        ReaderTree tree;
        QTEST(tree.open->property(QTest::currentDataTag()), "value");
        QVERIFY(!tree.open->setProperty(QTest::currentDataTag(), QVariant()));
        QTEST(tree.open->property(QTest::currentDataTag()), "value");
    }

    void theActionIsAProperty()
    {
        ReaderTree tree;
        QCOMPARE(tree.close->property("action").value<Action *>(), tree.actions.last());
        QVERIFY(!tree.close->setProperty("action", QVariant::fromValue(tree.actions.first())));
        QCOMPARE(tree.close->action(), tree.actions.last());
    }
};

QTEST_GUILESS_MAIN(tst_ActionTree)
#include "tst_actiontree.moc"
