<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>ChapterList</name>
    <message>
        <source>%1. %2</source>
        <extracomment>The number of a chapter, and its title.</extracomment>
        <translation>%L1. %2</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>GestureModes</name>
    <message>
        <source>reading</source>
        <translation>القراءة</translation>
    </message>
    <message>
        <source>selecting</source>
        <translation>التحديد</translation>
    </message>
    <message>
        <source>menu</source>
        <translation>القائمة</translation>
    </message>
    <message>
        <source>viewing</source>
        <translation>العرض</translation>
    </message>
    <message>
        <source>drawing</source>
        <translation>الرسم</translation>
    </message>
</context>
<context>
    <name>MenuPanel</name>
    <message>
        <source>Menu</source>
        <translation>القائمة</translation>
    </message>
    <message>
        <source>Chapters</source>
        <translation>الفصول</translation>
    </message>
    <message>
        <source>Bookmark</source>
        <translation>إشارة مرجعية</translation>
    </message>
    <message>
        <source>Smaller text</source>
        <translation>نص أصغر</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>نص أكبر</translation>
    </message>
    <message>
        <source>Light darker</source>
        <translation>إضاءة أخفت</translation>
    </message>
    <message>
        <source>Light brighter</source>
        <translation>إضاءة أسطع</translation>
    </message>
    <message>
        <source>Light colder</source>
        <translation>إضاءة أبرد</translation>
    </message>
    <message>
        <source>Light warmer</source>
        <translation>إضاءة أدفأ</translation>
    </message>
    <message>
        <source>Light on or off</source>
        <translation>تشغيل الإضاءة أو إطفاؤها</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>بحث</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Zones</source>
        <translation>المناطق</translation>
    </message>
</context>
<context>
    <name>Notice</name>
    <message>
        <source>Dismiss</source>
        <translation>إخفاء</translation>
    </message>
</context>
<context>
    <name>ReaderScreen</name>
    <message>
        <source>%1, page %2 of %3</source>
        <extracomment>The title of a chapter, and the number of a page.</extracomment>
        <translation>%1، الصفحة %L2 من %L3</translation>
    </message>
    <message>
        <source>Touch the page. The keys are arrows and digits, M for the mode and Z for the zones.</source>
        <translation>المس الصفحة. المفاتيح هي الأسهم والأرقام، وM للوضع وZ للمناطق.</translation>
    </message>
    <message>
        <source>Here the device would search.</source>
        <translation>هنا كان الجهاز سيجري بحثًا.</translation>
    </message>
    <message>
        <source>Here the device would refresh the screen.</source>
        <translation>هنا كان الجهاز سينعش الشاشة.</translation>
    </message>
    <message>
        <source>Here the device would highlight the selection.</source>
        <translation>هنا كان الجهاز سيميّز النص المحدَّد.</translation>
    </message>
    <message>
        <source>Here the device would write a note.</source>
        <translation>هنا كان الجهاز سيكتب ملاحظة.</translation>
    </message>
    <message>
        <source>Here the device would look up the selection.</source>
        <translation>هنا كان الجهاز سيبحث عن معنى النص المحدَّد.</translation>
    </message>
    <message>
        <source>This is the last page.</source>
        <translation>هذه هي الصفحة الأخيرة.</translation>
    </message>
    <message>
        <source>This is the first page.</source>
        <translation>هذه هي الصفحة الأولى.</translation>
    </message>
    <message>
        <source>This is the last chapter.</source>
        <translation>هذا هو الفصل الأخير.</translation>
    </message>
    <message>
        <source>This is the first chapter.</source>
        <translation>هذا هو الفصل الأول.</translation>
    </message>
    <message>
        <source>This is the smallest text.</source>
        <translation>هذا أصغر حجم للنص.</translation>
    </message>
    <message>
        <source>This is the largest text.</source>
        <translation>هذا أكبر حجم للنص.</translation>
    </message>
    <message>
        <source>Here the device would read aloud.</source>
        <translation>هنا كان الجهاز سيبدأ القراءة بصوت عالٍ.</translation>
    </message>
    <message>
        <source>Here the device would stop reading aloud.</source>
        <translation>هنا كان الجهاز سيوقف القراءة بصوت عالٍ.</translation>
    </message>
    <message>
        <source>Here the device would close the book.</source>
        <translation>هنا كان الجهاز سيغلق الكتاب.</translation>
    </message>
    <message>
        <source>This program has no action “%1”.</source>
        <translation>لا يوجد في هذا البرنامج إجراء باسم «%1».</translation>
    </message>
    <message>
        <source>%1 at %2, %3</source>
        <translation>%1 عند %2، %3</translation>
    </message>
    <message>
        <source>%1: nothing</source>
        <translation>%1: لا شيء</translation>
    </message>
    <message>
        <source>%1: %2 (%3), this device cannot do it</source>
        <translation>%1: %2 (%3)، ولا يستطيع هذا الجهاز تنفيذه</translation>
    </message>
    <message>
        <source>%1: %2 (%3)</source>
        <translation>%1: %2 (%3)</translation>
    </message>
    <message>
        <source>%1: turns the page, as there are no gestures</source>
        <translation>%1: يقلب الصفحة لعدم وجود إيماءات</translation>
    </message>
    <message>
        <source>%1: nothing, as there are no gestures</source>
        <translation>%1: لا شيء، لعدم وجود إيماءات</translation>
    </message>
    <message>
        <source>This page has a bookmark.</source>
        <translation>في هذه الصفحة إشارة مرجعية.</translation>
    </message>
    <message>
        <source>Page %1 of %2, chapter %3 of %4</source>
        <translation>الصفحة %L1 من %L2، الفصل %L3 من %L4</translation>
    </message>
    <message>
        <source>Light %1 of %2, warmth %3 of %2</source>
        <translation>الإضاءة %L1 من %L2، الدفء %L3 من %L2</translation>
    </message>
    <message>
        <source>The light is off.</source>
        <translation>الإضاءة مطفأة.</translation>
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
        <translation>%L1. %2</translation>
    </message>
    <message>
        <source>; </source>
        <comment>between the gestures of a zone</comment>
        <translation>؛ </translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Gestures</source>
        <translation>الإيماءات</translation>
    </message>
</context>
</TS>
