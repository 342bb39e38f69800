<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>ActionPicker</name>
    <message>
        <source>Back ›</source>
        <translation>戻る ›</translation>
    </message>
    <message>
        <source>‹ Back</source>
        <translation>‹ 戻る</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Now: %1</source>
        <translation>現在：%1</translation>
    </message>
    <message>
        <source>Actions</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>Use the default: %1</source>
        <translation>初期設定を使う：%1</translation>
    </message>
</context>
<context>
    <name>GestureListView</name>
    <message>
        <source>Not saved; another program has saved another choice.</source>
        <translation>未保存。別のプログラムが異なる選択を保存しました。</translation>
    </message>
    <message>
        <source>Not saved; the default again.</source>
        <translation>未保存。初期設定に戻しました。</translation>
    </message>
    <message>
        <source>Not saved; by default: %1</source>
        <translation>未保存。初期設定：%1</translation>
    </message>
    <message>
        <source>Your choice; by default: %1</source>
        <translation>選択済み。初期設定：%1</translation>
    </message>
    <message>
        <source>All</source>
        <comment>gestures of all kinds</comment>
        <translation>すべて</translation>
    </message>
    <message>
        <source>Shows gestures of this kind.</source>
        <translation>この種類のジェスチャーを表示します。</translation>
    </message>
    <message>
        <source>Changed</source>
        <comment>gestures</comment>
        <translation>変更済み</translation>
    </message>
    <message>
        <source>Shows only gestures with a choice of yours.</source>
        <translation>選択を変更したジェスチャーだけを表示します。</translation>
    </message>
    <message>
        <source>Shows also gestures that cannot be changed.</source>
        <translation>変更できないジェスチャーも表示します。</translation>
    </message>
    <message>
        <source>There is no gesture to show.</source>
        <translation>表示するジェスチャーはありません。</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>絞り込み</translation>
    </message>
    <message>
        <source>Filter: %1</source>
        <translation>絞り込み：%1</translation>
    </message>
    <message>
        <source>Shows the filters instead of the list.</source>
        <translation>一覧の代わりに絞り込みの条件を表示します。</translation>
    </message>
    <message>
        <source>Without a choice</source>
        <translation>選択肢なし</translation>
    </message>
    <message numerus="yes">
        <source>%n gesture(s)</source>
        <translation>
            <numerusform>%n 個のジェスチャー</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>GestureRow</name>
    <message>
        <source>%1: %2</source>
        <comment>a gesture, and its action</comment>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>This gesture cannot be changed.</source>
        <translation>このジェスチャーは変更できません。</translation>
    </message>
</context>
<context>
    <name>GestureSettingsPage</name>
    <message>
        <source>There are choices that are not saved. Save them before you leave?</source>
        <translation>保存していない選択があります。終了する前に保存しますか？</translation>
    </message>
    <message>
        <source>Save the changes</source>
        <translation>変更を保存する</translation>
    </message>
    <message>
        <source>Discard them</source>
        <translation>破棄する</translation>
    </message>
    <message>
        <source>Stay here</source>
        <translation>ここにとどまる</translation>
    </message>
    <message>
        <source>Gestures of “%1”</source>
        <translation>「%1」のジェスチャー</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message>
        <source>Drops everything that is not saved.</source>
        <translation>保存していない変更をすべて取り消します。</translation>
    </message>
    <message>
        <source>Defaults</source>
        <translation>初期設定</translation>
    </message>
    <message>
        <source>Forgets all your choices.</source>
        <translation>すべての選択を消去します。</translation>
    </message>
    <message>
        <source>Forget all your choices and use the defaults? Save makes it final.</source>
        <translation>すべての選択を消去して初期設定に戻しますか？「保存」を押すと確定します。</translation>
    </message>
    <message>
        <source>Forget them</source>
        <translation>消去する</translation>
    </message>
    <message>
        <source>Keep them</source>
        <translation>そのままにする</translation>
    </message>
</context>
<context>
    <name>Gestures</name>
    <message>
        <source>Tap</source>
        <translation>タップ</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>長押し</translation>
    </message>
    <message>
        <source>Swipe</source>
        <translation>スワイプ</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>ドラッグ</translation>
    </message>
    <message>
        <source>Gesture</source>
        <translation>ジェスチャー</translation>
    </message>
    <message>
        <source>Swipe to the left</source>
        <translation>左へスワイプ</translation>
    </message>
    <message>
        <source>Swipe to the right</source>
        <translation>右へスワイプ</translation>
    </message>
    <message>
        <source>Swipe upwards</source>
        <translation>上へスワイプ</translation>
    </message>
    <message>
        <source>Swipe downwards</source>
        <translation>下へスワイプ</translation>
    </message>
    <message>
        <source>Drag to the left</source>
        <translation>左へドラッグ</translation>
    </message>
    <message>
        <source>Drag to the right</source>
        <translation>右へドラッグ</translation>
    </message>
    <message>
        <source>Drag upwards</source>
        <translation>上へドラッグ</translation>
    </message>
    <message>
        <source>Drag downwards</source>
        <translation>下へドラッグ</translation>
    </message>
    <message>
        <source>Everywhere</source>
        <translation>すべての画面</translation>
    </message>
    <message>
        <source>%1: tap</source>
        <comment>modes of the application</comment>
        <translation>%1：タップ</translation>
    </message>
    <message>
        <source>%1: hold</source>
        <comment>modes of the application</comment>
        <translation>%1：長押し</translation>
    </message>
    <message>
        <source>%1: swipe</source>
        <comment>modes of the application</comment>
        <translation>%1：スワイプ</translation>
    </message>
    <message>
        <source>%1: drag</source>
        <comment>modes of the application</comment>
        <translation>%1：ドラッグ</translation>
    </message>
    <message>
        <source>in the top left corner</source>
        <translation>左上の隅</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>上端</translation>
    </message>
    <message>
        <source>in the top right corner</source>
        <translation>右上の隅</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>左側</translation>
    </message>
    <message>
        <source>in the middle</source>
        <translation>中央</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>右側</translation>
    </message>
    <message>
        <source>in the bottom left corner</source>
        <translation>左下の隅</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>下端</translation>
    </message>
    <message>
        <source>in the bottom right corner</source>
        <translation>右下の隅</translation>
    </message>
    <message>
        <source>along the left edge</source>
        <translation>左の縁</translation>
    </message>
    <message>
        <source>between the edges</source>
        <translation>左右の縁の間</translation>
    </message>
    <message>
        <source>along the right edge</source>
        <translation>右の縁</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>a touch, and a place on the screen</comment>
        <translation>%1、%2</translation>
    </message>
    <message>
        <source>Tap anywhere</source>
        <translation>画面のどこでもタップ</translation>
    </message>
    <message>
        <source>Hold anywhere</source>
        <translation>画面のどこでも長押し</translation>
    </message>
    <message>
        <source>Nothing</source>
        <comment>instead of an action</comment>
        <translation>なし</translation>
    </message>
    <message>
        <source>%1 (x %2–%3 %, y %4–%5 %)</source>
        <comment>a place, such as: at the top; then the edges of the zone</comment>
        <translation>%1（横 %2～%3&#xa0;%、縦 %4～%5&#xa0;%）</translation>
    </message>
</context>
<context>
    <name>MenuRow</name>
    <message>
        <source>A menu with the present action.</source>
        <translation>現在の操作を含むメニューです。</translation>
    </message>
    <message>
        <source>A menu.</source>
        <translation>メニューです。</translation>
    </message>
    <message>
        <source>The present action.</source>
        <translation>現在の操作です。</translation>
    </message>
</context>
<context>
    <name>MessageLine</name>
    <message>
        <source>Show the whole message</source>
        <translation>メッセージをすべて表示</translation>
    </message>
</context>
<context>
    <name>PagedList</name>
    <message>
        <source>List</source>
        <translation>一覧</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>前のページ</translation>
    </message>
    <message>
        <source>%1 / %2</source>
        <comment>the page, the number of pages</comment>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>Page %1 of %2</source>
        <translation>%2 ページ中 %1 ページ目</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>次のページ</translation>
    </message>
</context>
<context>
    <name>vellix::gesture::ConfigurationState</name>
    <message>
        <source>No application was named.</source>
        <translation>アプリが指定されていません。</translation>
    </message>
    <message>
        <source>“%1” may not have gestures of its own.</source>
        <translation>「%1」には独自のジェスチャーを設定できません。</translation>
    </message>
    <message>
        <source>There is no application “%1”: no gestures were found in %2.</source>
        <translation>アプリ「%1」はありません。%2 にジェスチャーが見つかりませんでした。</translation>
    </message>
    <message>
        <source>The gestures of “%1” cannot be read: %2.</source>
        <translation>「%1」のジェスチャーを読み込めません：%2。</translation>
    </message>
    <message>
        <source>The file is kept as “%1.rejected” when the settings save.</source>
        <translation>設定を保存すると、このファイルは「%1.rejected」として残ります。</translation>
    </message>
    <message>
        <source>Choices cannot be saved: %1 may not be written.</source>
        <translation>選択を保存できません。%1 に書き込む権限がありません。</translation>
    </message>
    <message>
        <source>Your choices do not fit the gestures of “%1”: %2. “Defaults” in the settings forgets them.</source>
        <translation>選択内容が「%1」のジェスチャーに合いません：%2。設定の「初期設定」で消去できます。</translation>
    </message>
    <message>
        <source>Your choices cannot be read (%1), so the defaults are shown. %2</source>
        <translation>保存された選択を読み込めない（%1）ため、初期設定を表示しています。%2</translation>
    </message>
    <message>
        <source>Your choices were saved by another version of this device, so the defaults are shown. %1</source>
        <translation>選択は別のバージョンで保存されたため、初期設定を表示しています。%1</translation>
    </message>
    <message>
        <source>The choices were not saved: %1.</source>
        <translation>選択は保存されませんでした：%1。</translation>
    </message>
    <message>
        <source>The choices were not saved: %1 may not be written.</source>
        <translation>選択は保存されませんでした。%1 に書き込む権限がありません。</translation>
    </message>
</context>
<context>
    <name>vellix::gesture::GestureEditor</name>
    <message>
        <source>The gestures of the application have changed.</source>
        <translation>アプリのジェスチャーが変更されました。</translation>
    </message>
    <message>
        <source>Another program has changed the choices. Your unsaved choices are kept.</source>
        <translation>別のプログラムが選択を変更しました。未保存の選択はそのまま残っています。</translation>
    </message>
    <message>
        <source>Another program has changed the choices.</source>
        <translation>別のプログラムが選択を変更しました。</translation>
    </message>
    <message>
        <source>There is no gesture “%1”.</source>
        <translation>ジェスチャー「%1」はありません。</translation>
    </message>
    <message>
        <source>“%1” is not offered for this gesture.</source>
        <translation>このジェスチャーには「%1」を選択できません。</translation>
    </message>
    <message>
        <source>This device does not have what “%1” needs.</source>
        <translation>この端末には「%1」に必要な機能がありません。</translation>
    </message>
    <message>
        <source>Saved. Another program had changed other choices.</source>
        <translation>保存しました。ほかの選択は別のプログラムによって変更されていました。</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>保存しました。</translation>
    </message>
    <message>
        <source>Another program has changed a choice that is unsaved here. Check it, then save again.</source>
        <translation>ここで保存していない選択を、別のプログラムが変更しました。確認してから、もう一度保存してください。</translation>
    </message>
    <message>
        <source>“%1” cannot be chosen. %2</source>
        <translation>「%1」は選択できません。%2</translation>
    </message>
    <message>
        <source>The application could not read its gestures any more (%1).</source>
        <translation>アプリがジェスチャーを読み込めなくなります（%1）。</translation>
    </message>
    <message>
        <source>The configuration itself decides what this gesture does.</source>
        <translation>このジェスチャーの動作は設定ファイルで決められています。</translation>
    </message>
    <message>
        <source>The choices were not saved. %1</source>
        <translation>選択は保存されませんでした。%1</translation>
    </message>
</context>
</TS>
