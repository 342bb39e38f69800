<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ChapterList</name>
    <message>
        <source>%1. %2</source>
        <extracomment>The number of a chapter, and its title.</extracomment>
        <translation>%1. %2</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>GestureModes</name>
    <message>
        <source>reading</source>
        <translation>Lesen</translation>
    </message>
    <message>
        <source>selecting</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>viewing</source>
        <translation>Ansehen</translation>
    </message>
    <message>
        <source>drawing</source>
        <translation>Zeichnen</translation>
    </message>
</context>
<context>
    <name>MenuPanel</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Chapters</source>
        <translation>Kapitel</translation>
    </message>
    <message>
        <source>Bookmark</source>
        <translation>Lesezeichen</translation>
    </message>
    <message>
        <source>Smaller text</source>
        <translation>Text kleiner</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>Text größer</translation>
    </message>
    <message>
        <source>Light darker</source>
        <translation>Licht dunkler</translation>
    </message>
    <message>
        <source>Light brighter</source>
        <translation>Licht heller</translation>
    </message>
    <message>
        <source>Light colder</source>
        <translation>Licht kälter</translation>
    </message>
    <message>
        <source>Light warmer</source>
        <translation>Licht wärmer</translation>
    </message>
    <message>
        <source>Light on or off</source>
        <translation>Licht an oder aus</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Zones</source>
        <translation>Zonen</translation>
    </message>
</context>
<context>
    <name>Notice</name>
    <message>
        <source>Dismiss</source>
        <translation>Ausblenden</translation>
    </message>
</context>
<context>
    <name>ReaderScreen</name>
    <message>
        <source>%1, page %2 of %3</source>
        <extracomment>The title of a chapter, and the number of a page.</extracomment>
        <translation>%1, Seite %2 von %3</translation>
    </message>
    <message>
        <source>Touch the page. The keys are arrows and digits, M for the mode and Z for the zones.</source>
        <translation>Die Seite berühren. Tasten sind Pfeile und Ziffern, M für den Modus und Z für die Zonen.</translation>
    </message>
    <message>
        <source>Here the device would search.</source>
        <translation>Hier würde das Gerät suchen.</translation>
    </message>
    <message>
        <source>Here the device would refresh the screen.</source>
        <translation>Hier würde das Gerät den Bildschirm auffrischen.</translation>
    </message>
    <message>
        <source>Here the device would highlight the selection.</source>
        <translation>Hier würde das Gerät die Auswahl markieren.</translation>
    </message>
    <message>
        <source>Here the device would write a note.</source>
        <translation>Hier würde das Gerät eine Notiz schreiben.</translation>
    </message>
    <message>
        <source>Here the device would look up the selection.</source>
        <translation>Hier würde das Gerät die Auswahl nachschlagen.</translation>
    </message>
    <message>
        <source>This is the last page.</source>
        <translation>Das ist die letzte Seite.</translation>
    </message>
    <message>
        <source>This is the first page.</source>
        <translation>Das ist die erste Seite.</translation>
    </message>
    <message>
        <source>This is the last chapter.</source>
        <translation>Das ist das letzte Kapitel.</translation>
    </message>
    <message>
        <source>This is the first chapter.</source>
        <translation>Das ist das erste Kapitel.</translation>
    </message>
    <message>
        <source>This is the smallest text.</source>
        <translation>Das ist die kleinste Schrift.</translation>
    </message>
    <message>
        <source>This is the largest text.</source>
        <translation>Das ist die größte Schrift.</translation>
    </message>
    <message>
        <source>Here the device would read aloud.</source>
        <translation>Hier würde das Gerät vorlesen.</translation>
    </message>
    <message>
        <source>Here the device would stop reading aloud.</source>
        <translation>Hier würde das Gerät das Vorlesen beenden.</translation>
    </message>
    <message>
        <source>Here the device would close the book.</source>
        <translation>Hier würde das Gerät das Buch schließen.</translation>
    </message>
    <message>
        <source>This program has no action “%1”.</source>
        <translation>Dieses Programm hat keine Aktion „%1“.</translation>
    </message>
    <message>
        <source>%1 at %2, %3</source>
        <translation>%1 bei %2; %3</translation>
    </message>
    <message>
        <source>%1: nothing</source>
        <translation>%1: nichts</translation>
    </message>
    <message>
        <source>%1: %2 (%3), this device cannot do it</source>
        <translation>%1: %2 (%3), dieses Gerät kann das nicht</translation>
    </message>
    <message>
        <source>%1: %2 (%3)</source>
        <translation>%1: %2 (%3)</translation>
    </message>
    <message>
        <source>%1: turns the page, as there are no gestures</source>
        <translation>%1: blättert um, da es keine Gesten gibt</translation>
    </message>
    <message>
        <source>%1: nothing, as there are no gestures</source>
        <translation>%1: nichts, da es keine Gesten gibt</translation>
    </message>
    <message>
        <source>This page has a bookmark.</source>
        <translation>Diese Seite hat ein Lesezeichen.</translation>
    </message>
    <message>
        <source>Page %1 of %2, chapter %3 of %4</source>
        <translation>Seite %1 von %2, Kapitel %3 von %4</translation>
    </message>
    <message>
        <source>Light %1 of %2, warmth %3 of %2</source>
        <translation>Licht %1 von %2, Wärme %3 von %2</translation>
    </message>
    <message>
        <source>The light is off.</source>
        <translation>Das Licht ist aus.</translation>
    </message>
</context>
<context>
    <name>ZoneOverlay</name>
    <message>
        <source>%1: %2</source>
        <extracomment>A touch, and its action.</extracomment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1. %2</source>
        <extracomment>The number of a zone, and its gestures.</extracomment>
        <translation>%1. %2</translation>
    </message>
    <message>
        <source>; </source>
        <comment>between the gestures of a zone</comment>
        <translation>; </translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Gestures</source>
        <translation>Gesten</translation>
    </message>
</context>
</TS>
