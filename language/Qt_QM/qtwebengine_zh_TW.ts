<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW">
<context>
    <name>RenderViewContextMenuQt</name>
    <message>
        <source>Cut</source>
        <translation>剪下</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>上一頁</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>複製</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>循環播放</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>復原</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>貼上</translation>
    </message>
    <message>
        <source>Inspect</source>
        <translation>檢查</translation>
    </message>
    <message>
        <source>Copy media address</source>
        <translation>複製媒體位址</translation>
    </message>
    <message>
        <source>Copy link address</source>
        <translation>複製連結位址</translation>
    </message>
    <message>
        <source>Exit full screen</source>
        <translation>結束全螢幕</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新載入</translation>
    </message>
    <message>
        <source>Paste and match style</source>
        <translation>貼上並符合樣式</translation>
    </message>
    <message>
        <source>Open link in new tab</source>
        <translation>在新分頁中開啟連結</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>儲存影像</translation>
    </message>
    <message>
        <source>Save media</source>
        <translation>儲存媒體</translation>
    </message>
    <message>
        <source>Copy image address</source>
        <translation>複製影像位址</translation>
    </message>
    <message>
        <source>Copy image</source>
        <translation>複製影像</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>全選</translation>
    </message>
    <message>
        <source>Save page</source>
        <translation>儲存頁面</translation>
    </message>
    <message>
        <source>Save link</source>
        <translation>儲存連結</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>下一頁</translation>
    </message>
    <message>
        <source>Show controls</source>
        <translation>顯示控制項</translation>
    </message>
    <message>
        <source>Open link in new window</source>
        <translation>在新視窗中開啟連結</translation>
    </message>
    <message>
        <source>View page source</source>
        <translation>檢視網頁原始碼</translation>
    </message>
</context>
<context>
    <name>QWebEnginePage</name>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Open link in this window</source>
        <translation>在此視窗中開啟連結</translation>
    </message>
    <message>
        <source>Open link in new background tab</source>
        <translation>在背景分頁中開啟連結</translation>
    </message>
    <message>
        <source>Toggle Mute</source>
        <translation>切換靜音</translation>
    </message>
    <message>
        <source>Unselect</source>
        <translation>取消選取</translation>
    </message>
    <message>
        <source>Reload and Bypass Cache</source>
        <translation>略過快取並重新載入</translation>
    </message>
    <message>
        <source>Select folder to upload</source>
        <translation>選擇要上傳的資料夾</translation>
    </message>
    <message>
        <source>Close Page</source>
        <translation>關閉頁面</translation>
    </message>
    <message>
        <source>Toggle Play/Pause</source>
        <translation>播放/暫停</translation>
    </message>
    <message>
        <source>Are you sure you want to leave this page? Changes that you made may not be saved.</source>
        <translation>確定要離開此頁面嗎？您所做的變更可能不會儲存。</translation>
    </message>
</context>
<context>
    <name>UIDelegatesManager</name>
    <message>
        <source>Javascript Alert - %1</source>
        <translation>JavaScript 警示 - %1</translation>
    </message>
    <message>
        <source>Javascript Confirm - %1</source>
        <translation>JavaScript 確認 - %1</translation>
    </message>
    <message>
        <source>Javascript Prompt - %1</source>
        <translation>JavaScript 提示 - %1</translation>
    </message>
    <message>
        <source>Are you sure you want to leave this page?</source>
        <translation>確定要離開此頁面嗎？</translation>
    </message>
    <message>
        <source>Changes that you made may not be saved.</source>
        <translation>您所做的變更可能不會儲存。</translation>
    </message>
</context>
</TS>
