<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>GestureListView</name>
    <message numerus="yes">
        <source>%n gesture(s)</source>
        <translation>
            <numerusform>%n gesture</numerusform>
            <numerusform>%n gestures</numerusform>
        </translation>
    </message>
</context>
</TS>
