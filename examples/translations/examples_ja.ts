<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>ChapterList</name>
    <message>
        <source>%1. %2</source>
        <extracomment>The number of a chapter, and its title.</extracomment>
        <translation>%1. %2</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>GestureModes</name>
    <message>
        <source>reading</source>
        <translation>読書</translation>
    </message>
    <message>
        <source>selecting</source>
        <translation>選択</translation>
    </message>
    <message>
        <source>menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>viewing</source>
        <translation>閲覧</translation>
    </message>
    <message>
        <source>drawing</source>
        <translation>描画</translation>
    </message>
</context>
<context>
    <name>MenuPanel</name>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Chapters</source>
        <translation>章の一覧</translation>
    </message>
    <message>
        <source>Bookmark</source>
        <translation>しおり</translation>
    </message>
    <message>
        <source>Smaller text</source>
        <translation>文字を小さく</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>文字を大きく</translation>
    </message>
    <message>
        <source>Light darker</source>
        <translation>ライトを暗く</translation>
    </message>
    <message>
        <source>Light brighter</source>
        <translation>ライトを明るく</translation>
    </message>
    <message>
        <source>Light colder</source>
        <translation>ライトを寒色に</translation>
    </message>
    <message>
        <source>Light warmer</source>
        <translation>ライトを暖色に</translation>
    </message>
    <message>
        <source>Light on or off</source>
        <translation>ライトのオン・オフ</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Zones</source>
        <translation>領域</translation>
    </message>
</context>
<context>
    <name>Notice</name>
    <message>
        <source>Dismiss</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>ReaderScreen</name>
    <message>
        <source>%1, page %2 of %3</source>
        <extracomment>The title of a chapter, and the number of a page.</extracomment>
        <translation>%1、%3 ページ中 %2 ページ目</translation>
    </message>
    <message>
        <source>Touch the page. The keys are arrows and digits, M for the mode and Z for the zones.</source>
        <translation>ページに触れてください。キーは矢印と数字、M でモード、Z で領域を切り替えます。</translation>
    </message>
    <message>
        <source>Here the device would search.</source>
        <translation>ここで端末が検索を行います。</translation>
    </message>
    <message>
        <source>Here the device would refresh the screen.</source>
        <translation>ここで端末が画面を書き換えます。</translation>
    </message>
    <message>
        <source>Here the device would highlight the selection.</source>
        <translation>ここで端末が選択範囲に印を付けます。</translation>
    </message>
    <message>
        <source>Here the device would write a note.</source>
        <translation>ここで端末がメモを書きます。</translation>
    </message>
    <message>
        <source>Here the device would look up the selection.</source>
        <translation>ここで端末が選択範囲を辞書で引きます。</translation>
    </message>
    <message>
        <source>This is the last page.</source>
        <translation>最後のページです。</translation>
    </message>
    <message>
        <source>This is the first page.</source>
        <translation>最初のページです。</translation>
    </message>
    <message>
        <source>This is the last chapter.</source>
        <translation>最後の章です。</translation>
    </message>
    <message>
        <source>This is the first chapter.</source>
        <translation>最初の章です。</translation>
    </message>
    <message>
        <source>This is the smallest text.</source>
        <translation>これより小さくできません。</translation>
    </message>
    <message>
        <source>This is the largest text.</source>
        <translation>これより大きくできません。</translation>
    </message>
    <message>
        <source>Here the device would read aloud.</source>
        <translation>ここで端末が読み上げを始めます。</translation>
    </message>
    <message>
        <source>Here the device would stop reading aloud.</source>
        <translation>ここで端末が読み上げを止めます。</translation>
    </message>
    <message>
        <source>Here the device would close the book.</source>
        <translation>ここで端末が本を閉じます。</translation>
    </message>
    <message>
        <source>This program has no action “%1”.</source>
        <translation>このプログラムには操作「%1」がありません。</translation>
    </message>
    <message>
        <source>%1 at %2, %3</source>
        <translation>%1（位置 %2、%3）</translation>
    </message>
    <message>
        <source>%1: nothing</source>
        <translation>%1：なし</translation>
    </message>
    <message>
        <source>%1: %2 (%3), this device cannot do it</source>
        <translation>%1：%2（%3）、この端末では実行できません</translation>
    </message>
    <message>
        <source>%1: %2 (%3)</source>
        <translation>%1：%2（%3）</translation>
    </message>
    <message>
        <source>%1: turns the page, as there are no gestures</source>
        <translation>%1：ジェスチャーがないため、ページをめくります</translation>
    </message>
    <message>
        <source>%1: nothing, as there are no gestures</source>
        <translation>%1：ジェスチャーがないため、何もしません</translation>
    </message>
    <message>
        <source>This page has a bookmark.</source>
        <translation>このページにはしおりがあります。</translation>
    </message>
    <message>
        <source>Page %1 of %2, chapter %3 of %4</source>
        <translation>%2 ページ中 %1 ページ目、%4 章中 %3 章目</translation>
    </message>
    <message>
        <source>Light %1 of %2, warmth %3 of %2</source>
        <translation>明るさ %1/%2、暖かさ %3/%2</translation>
    </message>
    <message>
        <source>The light is off.</source>
        <translation>ライトは消えています。</translation>
    </message>
</context>
<context>
    <name>ZoneOverlay</name>
    <message>
        <source>%1: %2</source>
        <extracomment>A touch, and its action.</extracomment>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>%1. %2</source>
        <extracomment>The number of a zone, and its gestures.</extracomment>
        <translation>%1. %2</translation>
    </message>
    <message>
        <source>; </source>
        <comment>between the gestures of a zone</comment>
        <translation>；</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Gestures</source>
        <translation>ジェスチャー</translation>
    </message>
</context>
</TS>
