<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>ActionPicker</name>
    <message>
        <source>Back ›</source>
        <translation>‹ رجوع</translation>
    </message>
    <message>
        <source>‹ Back</source>
        <translation>رجوع ›</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Now: %1</source>
        <translation>الآن: %1</translation>
    </message>
    <message>
        <source>Actions</source>
        <translation>الإجراءات</translation>
    </message>
    <message>
        <source>Use the default: %1</source>
        <translation>استخدام الافتراضي: %1</translation>
    </message>
</context>
<context>
    <name>GestureListView</name>
    <message>
        <source>Not saved; another program has saved another choice.</source>
        <translation>غير محفوظ؛ حفظ برنامج آخر اختيارًا مختلفًا.</translation>
    </message>
    <message>
        <source>Not saved; the default again.</source>
        <translation>غير محفوظ؛ عاد إلى الافتراضي.</translation>
    </message>
    <message>
        <source>Not saved; by default: %1</source>
        <translation>غير محفوظ؛ الافتراضي: %1</translation>
    </message>
    <message>
        <source>Your choice; by default: %1</source>
        <translation>اختيارك؛ الافتراضي: %1</translation>
    </message>
    <message>
        <source>All</source>
        <comment>gestures of all kinds</comment>
        <translation>الكل</translation>
    </message>
    <message>
        <source>Shows gestures of this kind.</source>
        <translation>يعرض إيماءات هذا النوع.</translation>
    </message>
    <message>
        <source>Changed</source>
        <comment>gestures</comment>
        <translation>المغيَّرة</translation>
    </message>
    <message>
        <source>Shows only gestures with a choice of yours.</source>
        <translation>يعرض فقط الإيماءات التي غيّرت إجراءها.</translation>
    </message>
    <message>
        <source>Shows also gestures that cannot be changed.</source>
        <translation>يعرض أيضًا الإيماءات التي لا يمكن تغييرها.</translation>
    </message>
    <message>
        <source>There is no gesture to show.</source>
        <translation>لا توجد إيماءة لعرضها.</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>تصفية</translation>
    </message>
    <message>
        <source>Filter: %1</source>
        <translation>تصفية: %1</translation>
    </message>
    <message>
        <source>Shows the filters instead of the list.</source>
        <translation>يعرض عوامل التصفية بدلًا من القائمة.</translation>
    </message>
    <message>
        <source>Without a choice</source>
        <translation>بلا اختيار</translation>
    </message>
    <message numerus="yes">
        <source>%n gesture(s)</source>
        <translation>
            <numerusform>%n إيماءة</numerusform>
            <numerusform>%n إيماءة</numerusform>
            <numerusform>%n إيماءة</numerusform>
            <numerusform>%n إيماءات</numerusform>
            <numerusform>%n إيماءة</numerusform>
            <numerusform>%n إيماءة</numerusform>
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
        <translation>لا يمكن تغيير هذه الإيماءة.</translation>
    </message>
</context>
<context>
    <name>GestureSettingsPage</name>
    <message>
        <source>There are choices that are not saved. Save them before you leave?</source>
        <translation>توجد اختيارات غير محفوظة. هل تريد حفظها قبل المغادرة؟</translation>
    </message>
    <message>
        <source>Save the changes</source>
        <translation>حفظ التغييرات</translation>
    </message>
    <message>
        <source>Discard them</source>
        <translation>تجاهُل التغييرات</translation>
    </message>
    <message>
        <source>Stay here</source>
        <translation>البقاء هنا</translation>
    </message>
    <message>
        <source>Gestures of “%1”</source>
        <translation>إيماءات «%1»</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>حفظ</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>تراجع</translation>
    </message>
    <message>
        <source>Drops everything that is not saved.</source>
        <translation>يتجاهل كل ما لم يُحفظ.</translation>
    </message>
    <message>
        <source>Defaults</source>
        <translation>الافتراضي</translation>
    </message>
    <message>
        <source>Forgets all your choices.</source>
        <translation>ينسى كل اختياراتك.</translation>
    </message>
    <message>
        <source>Forget all your choices and use the defaults? Save makes it final.</source>
        <translation>هل تريد نسيان كل اختياراتك واستخدام الإعدادات الافتراضية؟ لا يصبح ذلك نهائيًا إلا بعد «حفظ».</translation>
    </message>
    <message>
        <source>Forget them</source>
        <translation>نسيان الاختيارات</translation>
    </message>
    <message>
        <source>Keep them</source>
        <translation>الإبقاء عليها</translation>
    </message>
</context>
<context>
    <name>Gestures</name>
    <message>
        <source>Tap</source>
        <translation>نقر</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>ضغط مطوّل</translation>
    </message>
    <message>
        <source>Swipe</source>
        <translation>تمرير سريع</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>سحب</translation>
    </message>
    <message>
        <source>Gesture</source>
        <translation>إيماءة</translation>
    </message>
    <message>
        <source>Swipe to the left</source>
        <translation>تمرير سريع إلى اليسار</translation>
    </message>
    <message>
        <source>Swipe to the right</source>
        <translation>تمرير سريع إلى اليمين</translation>
    </message>
    <message>
        <source>Swipe upwards</source>
        <translation>تمرير سريع إلى الأعلى</translation>
    </message>
    <message>
        <source>Swipe downwards</source>
        <translation>تمرير سريع إلى الأسفل</translation>
    </message>
    <message>
        <source>Drag to the left</source>
        <translation>سحب إلى اليسار</translation>
    </message>
    <message>
        <source>Drag to the right</source>
        <translation>سحب إلى اليمين</translation>
    </message>
    <message>
        <source>Drag upwards</source>
        <translation>سحب إلى الأعلى</translation>
    </message>
    <message>
        <source>Drag downwards</source>
        <translation>سحب إلى الأسفل</translation>
    </message>
    <message>
        <source>Everywhere</source>
        <translation>في كل مكان</translation>
    </message>
    <message>
        <source>%1: tap</source>
        <comment>modes of the application</comment>
        <translation>%1: النقر</translation>
    </message>
    <message>
        <source>%1: hold</source>
        <comment>modes of the application</comment>
        <translation>%1: الضغط المطوّل</translation>
    </message>
    <message>
        <source>%1: swipe</source>
        <comment>modes of the application</comment>
        <translation>%1: التمرير السريع</translation>
    </message>
    <message>
        <source>%1: drag</source>
        <comment>modes of the application</comment>
        <translation>%1: السحب</translation>
    </message>
    <message>
        <source>in the top left corner</source>
        <translation>في الزاوية العلوية اليسرى</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>في الأعلى</translation>
    </message>
    <message>
        <source>in the top right corner</source>
        <translation>في الزاوية العلوية اليمنى</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>على اليسار</translation>
    </message>
    <message>
        <source>in the middle</source>
        <translation>في الوسط</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>على اليمين</translation>
    </message>
    <message>
        <source>in the bottom left corner</source>
        <translation>في الزاوية السفلية اليسرى</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>في الأسفل</translation>
    </message>
    <message>
        <source>in the bottom right corner</source>
        <translation>في الزاوية السفلية اليمنى</translation>
    </message>
    <message>
        <source>along the left edge</source>
        <translation>على امتداد الحافة اليسرى</translation>
    </message>
    <message>
        <source>between the edges</source>
        <translation>بين الحافتين</translation>
    </message>
    <message>
        <source>along the right edge</source>
        <translation>على امتداد الحافة اليمنى</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>a touch, and a place on the screen</comment>
        <translation>%1، %2</translation>
    </message>
    <message>
        <source>Tap anywhere</source>
        <translation>نقر في أي مكان</translation>
    </message>
    <message>
        <source>Hold anywhere</source>
        <translation>ضغط مطوّل في أي مكان</translation>
    </message>
    <message>
        <source>Nothing</source>
        <comment>instead of an action</comment>
        <translation>لا شيء</translation>
    </message>
    <message>
        <source>%1 (x %2–%3 %, y %4–%5 %)</source>
        <comment>a place, such as: at the top; then the edges of the zone</comment>
        <translation>%1 (س %2–%3&#xa0;%، ص %4–%5&#xa0;%)</translation>
    </message>
</context>
<context>
    <name>MenuRow</name>
    <message>
        <source>A menu with the present action.</source>
        <translation>قائمة تحتوي على الإجراء الحالي.</translation>
    </message>
    <message>
        <source>A menu.</source>
        <translation>قائمة.</translation>
    </message>
    <message>
        <source>The present action.</source>
        <translation>الإجراء الحالي.</translation>
    </message>
</context>
<context>
    <name>MessageLine</name>
    <message>
        <source>Show the whole message</source>
        <translation>عرض الرسالة كاملة</translation>
    </message>
</context>
<context>
    <name>PagedList</name>
    <message>
        <source>List</source>
        <translation>قائمة</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>الصفحة السابقة</translation>
    </message>
    <message>
        <source>%1 / %2</source>
        <comment>the page, the number of pages</comment>
        <translation>%L1 / %L2</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>الصفحة %L1 من %L2</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>الصفحة التالية</translation>
    </message>
</context>
<context>
    <name>vellix::gesture::ConfigurationState</name>
    <message>
        <source>No application was named.</source>
        <translation>لم يُحدَّد أي تطبيق.</translation>
    </message>
    <message>
        <source>“%1” may not have gestures of its own.</source>
        <translation>لا يُسمح بأن تكون للتطبيق «%1» إيماءات خاصة به.</translation>
    </message>
    <message>
        <source>There is no application “%1”: no gestures were found in %2.</source>
        <translation>لا يوجد تطبيق باسم «%1»: لم يُعثر على إيماءات في %2.</translation>
    </message>
    <message>
        <source>The gestures of “%1” cannot be read: %2.</source>
        <translation>تتعذّر قراءة إيماءات «%1»: %2.</translation>
    </message>
    <message>
        <source>The file is kept as “%1.rejected” when the settings save.</source>
        <translation>عند الحفظ يُحتفظ بالملف باسم «%1.rejected».</translation>
    </message>
    <message>
        <source>Choices cannot be saved: %1 may not be written.</source>
        <translation>لا يمكن حفظ الاختيارات: الكتابة في %1 غير مسموح بها.</translation>
    </message>
    <message>
        <source>Your choices do not fit the gestures of “%1”: %2. “Defaults” in the settings forgets them.</source>
        <translation>اختياراتك لا تلائم إيماءات «%1»: %2. الزر «الافتراضي» في الإعدادات يتجاهلها.</translation>
    </message>
    <message>
        <source>Your choices cannot be read (%1), so the defaults are shown. %2</source>
        <translation>تتعذّر قراءة اختياراتك (%1)، لذلك تُعرض الإعدادات الافتراضية. %2</translation>
    </message>
    <message>
        <source>Your choices were saved by another version of this device, so the defaults are shown. %1</source>
        <translation>حُفظت اختياراتك بإصدار آخر من هذا الجهاز، لذلك تُعرض الإعدادات الافتراضية. %1</translation>
    </message>
    <message>
        <source>The choices were not saved: %1.</source>
        <translation>لم تُحفظ الاختيارات: %1.</translation>
    </message>
    <message>
        <source>The choices were not saved: %1 may not be written.</source>
        <translation>لم تُحفظ الاختيارات: الكتابة في %1 غير مسموح بها.</translation>
    </message>
</context>
<context>
    <name>vellix::gesture::GestureEditor</name>
    <message>
        <source>The gestures of the application have changed.</source>
        <translation>تغيّرت إيماءات التطبيق.</translation>
    </message>
    <message>
        <source>Another program has changed the choices. Your unsaved choices are kept.</source>
        <translation>غيّر برنامج آخر الاختيارات. اختياراتك غير المحفوظة باقية.</translation>
    </message>
    <message>
        <source>Another program has changed the choices.</source>
        <translation>غيّر برنامج آخر الاختيارات.</translation>
    </message>
    <message>
        <source>There is no gesture “%1”.</source>
        <translation>لا توجد إيماءة باسم «%1».</translation>
    </message>
    <message>
        <source>“%1” is not offered for this gesture.</source>
        <translation>«%1» غير متاح لهذه الإيماءة.</translation>
    </message>
    <message>
        <source>This device does not have what “%1” needs.</source>
        <translation>لا يتوفر في هذا الجهاز ما يحتاج إليه «%1».</translation>
    </message>
    <message>
        <source>Saved. Another program had changed other choices.</source>
        <translation>حُفظت الاختيارات. وكان برنامج آخر قد غيّر اختيارات أخرى.</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>حُفظت الاختيارات.</translation>
    </message>
    <message>
        <source>Another program has changed a choice that is unsaved here. Check it, then save again.</source>
        <translation>غيّر برنامج آخر اختيارًا لم يُحفظ هنا بعد. تحقّق منه ثم احفظ مرة أخرى.</translation>
    </message>
    <message>
        <source>“%1” cannot be chosen. %2</source>
        <translation>لا يمكن اختيار «%1». %2</translation>
    </message>
    <message>
        <source>The application could not read its gestures any more (%1).</source>
        <translation>لن يتمكن التطبيق من قراءة إيماءاته بعد ذلك (%1).</translation>
    </message>
    <message>
        <source>The configuration itself decides what this gesture does.</source>
        <translation>الإعدادات نفسها تحدد ما تفعله هذه الإيماءة.</translation>
    </message>
    <message>
        <source>The choices were not saved. %1</source>
        <translation>لم تُحفظ الاختيارات. %1</translation>
    </message>
</context>
</TS>
