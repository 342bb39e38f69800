<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ActionPicker</name>
    <message>
        <source>Back ›</source>
        <translation>Zurück ›</translation>
    </message>
    <message>
        <source>‹ Back</source>
        <translation>‹ Zurück</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Now: %1</source>
        <translation>Jetzt: %1</translation>
    </message>
    <message>
        <source>Actions</source>
        <translation>Aktionen</translation>
    </message>
    <message>
        <source>Use the default: %1</source>
        <translation>Standard verwenden: %1</translation>
    </message>
</context>
<context>
    <name>GestureListView</name>
    <message>
        <source>Not saved; another program has saved another choice.</source>
        <translation>Nicht gespeichert; ein anderes Programm hat eine andere Auswahl gespeichert.</translation>
    </message>
    <message>
        <source>Not saved; the default again.</source>
        <translation>Nicht gespeichert; wieder der Standard.</translation>
    </message>
    <message>
        <source>Not saved; by default: %1</source>
        <translation>Nicht gespeichert; Standard: %1</translation>
    </message>
    <message>
        <source>Your choice; by default: %1</source>
        <translation>Eigene Auswahl; Standard: %1</translation>
    </message>
    <message>
        <source>All</source>
        <comment>gestures of all kinds</comment>
        <translation>Alle</translation>
    </message>
    <message>
        <source>Shows gestures of this kind.</source>
        <translation>Zeigt Gesten dieser Art.</translation>
    </message>
    <message>
        <source>Changed</source>
        <comment>gestures</comment>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Shows only gestures with a choice of yours.</source>
        <translation>Zeigt nur Gesten mit eigener Auswahl.</translation>
    </message>
    <message>
        <source>Shows also gestures that cannot be changed.</source>
        <translation>Zeigt auch Gesten, die sich nicht ändern lassen.</translation>
    </message>
    <message>
        <source>There is no gesture to show.</source>
        <translation>Es gibt keine Geste zu zeigen.</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter: %1</source>
        <translation>Filter: %1</translation>
    </message>
    <message>
        <source>Shows the filters instead of the list.</source>
        <translation>Zeigt die Filter statt der Liste.</translation>
    </message>
    <message>
        <source>Without a choice</source>
        <translation>Ohne Auswahl</translation>
    </message>
    <message numerus="yes">
        <source>%n gesture(s)</source>
        <translation>
            <numerusform>%n Geste</numerusform>
            <numerusform>%n Gesten</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>GestureRow</name>
    <message>
        <source>%1: %2</source>
        <comment>a gesture, and its action</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>This gesture cannot be changed.</source>
        <translation>Diese Geste lässt sich nicht ändern.</translation>
    </message>
</context>
<context>
    <name>GestureSettingsPage</name>
    <message>
        <source>There are choices that are not saved. Save them before you leave?</source>
        <translation>Die Auswahl ist noch nicht gespeichert. Vor dem Verlassen speichern?</translation>
    </message>
    <message>
        <source>Save the changes</source>
        <translation>Änderungen speichern</translation>
    </message>
    <message>
        <source>Discard them</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Stay here</source>
        <translation>Hier bleiben</translation>
    </message>
    <message>
        <source>Gestures of “%1”</source>
        <translation>Gesten von „%1“</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Drops everything that is not saved.</source>
        <translation>Verwirft alles, was nicht gespeichert ist.</translation>
    </message>
    <message>
        <source>Defaults</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Forgets all your choices.</source>
        <translation>Verwirft die gesamte Auswahl.</translation>
    </message>
    <message>
        <source>Forget all your choices and use the defaults? Save makes it final.</source>
        <translation>Die gesamte Auswahl verwerfen und den Standard verwenden? Erst „Speichern“ macht das endgültig.</translation>
    </message>
    <message>
        <source>Forget them</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Keep them</source>
        <translation>Behalten</translation>
    </message>
</context>
<context>
    <name>Gestures</name>
    <message>
        <source>Tap</source>
        <translation>Tippen</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Halten</translation>
    </message>
    <message>
        <source>Swipe</source>
        <translation>Wischen</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>Ziehen</translation>
    </message>
    <message>
        <source>Gesture</source>
        <translation>Geste</translation>
    </message>
    <message>
        <source>Swipe to the left</source>
        <translation>Nach links wischen</translation>
    </message>
    <message>
        <source>Swipe to the right</source>
        <translation>Nach rechts wischen</translation>
    </message>
    <message>
        <source>Swipe upwards</source>
        <translation>Nach oben wischen</translation>
    </message>
    <message>
        <source>Swipe downwards</source>
        <translation>Nach unten wischen</translation>
    </message>
    <message>
        <source>Drag to the left</source>
        <translation>Nach links ziehen</translation>
    </message>
    <message>
        <source>Drag to the right</source>
        <translation>Nach rechts ziehen</translation>
    </message>
    <message>
        <source>Drag upwards</source>
        <translation>Nach oben ziehen</translation>
    </message>
    <message>
        <source>Drag downwards</source>
        <translation>Nach unten ziehen</translation>
    </message>
    <message>
        <source>Everywhere</source>
        <translation>Überall</translation>
    </message>
    <message>
        <source>%1: tap</source>
        <comment>modes of the application</comment>
        <translation>%1: Tippen</translation>
    </message>
    <message>
        <source>%1: hold</source>
        <comment>modes of the application</comment>
        <translation>%1: Halten</translation>
    </message>
    <message>
        <source>%1: swipe</source>
        <comment>modes of the application</comment>
        <translation>%1: Wischen</translation>
    </message>
    <message>
        <source>%1: drag</source>
        <comment>modes of the application</comment>
        <translation>%1: Ziehen</translation>
    </message>
    <message>
        <source>in the top left corner</source>
        <translation>in der Ecke oben links</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>oben</translation>
    </message>
    <message>
        <source>in the top right corner</source>
        <translation>in der Ecke oben rechts</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>links</translation>
    </message>
    <message>
        <source>in the middle</source>
        <translation>in der Mitte</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>rechts</translation>
    </message>
    <message>
        <source>in the bottom left corner</source>
        <translation>in der Ecke unten links</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>unten</translation>
    </message>
    <message>
        <source>in the bottom right corner</source>
        <translation>in der Ecke unten rechts</translation>
    </message>
    <message>
        <source>along the left edge</source>
        <translation>am linken Rand</translation>
    </message>
    <message>
        <source>between the edges</source>
        <translation>zwischen den Rändern</translation>
    </message>
    <message>
        <source>along the right edge</source>
        <translation>am rechten Rand</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>a touch, and a place on the screen</comment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Tap anywhere</source>
        <translation>Irgendwo tippen</translation>
    </message>
    <message>
        <source>Hold anywhere</source>
        <translation>Irgendwo halten</translation>
    </message>
    <message>
        <source>Nothing</source>
        <comment>instead of an action</comment>
        <translation>Nichts</translation>
    </message>
    <message>
        <source>%1 (x %2–%3 %, y %4–%5 %)</source>
        <comment>a place, such as: at the top; then the edges of the zone</comment>
        <translation>%1 (x %2–%3&#xa0;%, y %4–%5&#xa0;%)</translation>
    </message>
</context>
<context>
    <name>MenuRow</name>
    <message>
        <source>A menu with the present action.</source>
        <translation>Ein Menü mit der jetzigen Aktion.</translation>
    </message>
    <message>
        <source>A menu.</source>
        <translation>Ein Menü.</translation>
    </message>
    <message>
        <source>The present action.</source>
        <translation>Die jetzige Aktion.</translation>
    </message>
</context>
<context>
    <name>MessageLine</name>
    <message>
        <source>Show the whole message</source>
        <translation>Ganze Meldung zeigen</translation>
    </message>
</context>
<context>
    <name>PagedList</name>
    <message>
        <source>List</source>
        <translation>Liste</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Vorherige Seite</translation>
    </message>
    <message>
        <source>%1 / %2</source>
        <comment>the page, the number of pages</comment>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>Seite %1 von %2</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Nächste Seite</translation>
    </message>
</context>
<context>
    <name>vellix::gesture::ConfigurationState</name>
    <message>
        <source>No application was named.</source>
        <translation>Es wurde keine Anwendung angegeben.</translation>
    </message>
    <message>
        <source>“%1” may not have gestures of its own.</source>
        <translation>„%1“ darf keine eigenen Gesten haben.</translation>
    </message>
    <message>
        <source>There is no application “%1”: no gestures were found in %2.</source>
        <translation>Es gibt keine Anwendung „%1“: In %2 wurden keine Gesten gefunden.</translation>
    </message>
    <message>
        <source>The gestures of “%1” cannot be read: %2.</source>
        <translation>Die Gesten von „%1“ können nicht gelesen werden: %2.</translation>
    </message>
    <message>
        <source>The file is kept as “%1.rejected” when the settings save.</source>
        <translation>Beim Speichern bleibt die Datei als „%1.rejected“ erhalten.</translation>
    </message>
    <message>
        <source>Choices cannot be saved: %1 may not be written.</source>
        <translation>Die Auswahl kann nicht gespeichert werden: In %1 darf nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>Your choices do not fit the gestures of “%1”: %2. “Defaults” in the settings forgets them.</source>
        <translation>Die Auswahl passt nicht zu den Gesten von „%1“: %2. „Standard“ in den Einstellungen verwirft sie.</translation>
    </message>
    <message>
        <source>Your choices cannot be read (%1), so the defaults are shown. %2</source>
        <translation>Die gespeicherte Auswahl kann nicht gelesen werden (%1), daher wird der Standard gezeigt. %2</translation>
    </message>
    <message>
        <source>Your choices were saved by another version of this device, so the defaults are shown. %1</source>
        <translation>Die Auswahl wurde mit einer anderen Version dieses Geräts gespeichert, daher wird der Standard gezeigt. %1</translation>
    </message>
    <message>
        <source>The choices were not saved: %1.</source>
        <translation>Die Auswahl wurde nicht gespeichert: %1.</translation>
    </message>
    <message>
        <source>The choices were not saved: %1 may not be written.</source>
        <translation>Die Auswahl wurde nicht gespeichert: In %1 darf nicht geschrieben werden.</translation>
    </message>
</context>
<context>
    <name>vellix::gesture::GestureEditor</name>
    <message>
        <source>The gestures of the application have changed.</source>
        <translation>Die Gesten der Anwendung haben sich geändert.</translation>
    </message>
    <message>
        <source>Another program has changed the choices. Your unsaved choices are kept.</source>
        <translation>Ein anderes Programm hat die Auswahl geändert. Die noch nicht gespeicherte Auswahl bleibt erhalten.</translation>
    </message>
    <message>
        <source>Another program has changed the choices.</source>
        <translation>Ein anderes Programm hat die Auswahl geändert.</translation>
    </message>
    <message>
        <source>There is no gesture “%1”.</source>
        <translation>Es gibt keine Geste „%1“.</translation>
    </message>
    <message>
        <source>“%1” is not offered for this gesture.</source>
        <translation>„%1“ steht für diese Geste nicht zur Auswahl.</translation>
    </message>
    <message>
        <source>This device does not have what “%1” needs.</source>
        <translation>Diesem Gerät fehlt, was „%1“ braucht.</translation>
    </message>
    <message>
        <source>Saved. Another program had changed other choices.</source>
        <translation>Gespeichert. Ein anderes Programm hatte andere Gesten geändert.</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>Gespeichert.</translation>
    </message>
    <message>
        <source>Another program has changed a choice that is unsaved here. Check it, then save again.</source>
        <translation>Ein anderes Programm hat eine Auswahl geändert, die hier noch nicht gespeichert ist. Bitte prüfen und dann erneut speichern.</translation>
    </message>
    <message>
        <source>“%1” cannot be chosen. %2</source>
        <translation>„%1“ kann nicht gewählt werden. %2</translation>
    </message>
    <message>
        <source>The application could not read its gestures any more (%1).</source>
        <translation>Die Anwendung könnte ihre Gesten nicht mehr lesen (%1).</translation>
    </message>
    <message>
        <source>The configuration itself decides what this gesture does.</source>
        <translation>Die Konfiguration legt selbst fest, was diese Geste tut.</translation>
    </message>
    <message>
        <source>The choices were not saved. %1</source>
        <translation>Die Auswahl wurde nicht gespeichert. %1</translation>
    </message>
</context>
</TS>
