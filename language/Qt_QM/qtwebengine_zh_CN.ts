<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>RenderViewContextMenuQt</name>
    <message>
        <source>Cut</source>
        <translation>剪切</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>后退</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>循环播放</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>重做</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤消</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>粘贴</translation>
    </message>
    <message>
        <source>Inspect</source>
        <translation>检查</translation>
    </message>
    <message>
        <source>Copy media address</source>
        <translation>复制媒体地址</translation>
    </message>
    <message>
        <source>Copy link address</source>
        <translation>复制链接地址</translation>
    </message>
    <message>
        <source>Exit full screen</source>
        <translation>退出全屏</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>刷新</translation>
    </message>
    <message>
        <source>Paste and match style</source>
        <translation>粘贴并匹配样式</translation>
    </message>
    <message>
        <source>Open link in new tab</source>
        <translation>在新标签页中打开链接</translation>
    </message>
    <message>
        <source>Save image</source>
        <translation>保存图像</translation>
    </message>
    <message>
        <source>Save media</source>
        <translation>保存媒体</translation>
    </message>
    <message>
        <source>Copy image address</source>
        <translation>复制图像地址</translation>
    </message>
    <message>
        <source>Copy image</source>
        <translation>复制图像</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Save page</source>
        <translation>保存页面</translation>
    </message>
    <message>
        <source>Save link</source>
        <translation>保存链接</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>前进</translation>
    </message>
    <message>
        <source>Show controls</source>
        <translation>显示控件</translation>
    </message>
    <message>
        <source>Open link in new window</source>
        <translation>在新窗口中打开链接</translation>
    </message>
    <message>
        <source>View page source</source>
        <translation>查看页面源代码</translation>
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
        <translation>在此窗口中打开链接</translation>
    </message>
    <message>
        <source>Open link in new background tab</source>
        <translation>在后台标签页中打开链接</translation>
    </message>
    <message>
        <source>Toggle Mute</source>
        <translation>切换静音</translation>
    </message>
    <message>
        <source>Unselect</source>
        <translation>取消选择</translation>
    </message>
    <message>
        <source>Reload and Bypass Cache</source>
        <translation>忽略缓存并刷新</translation>
    </message>
    <message>
        <source>Select folder to upload</source>
        <translation>选择要上传的文件夹</translation>
    </message>
    <message>
        <source>Close Page</source>
        <translation>关闭页面</translation>
    </message>
    <message>
        <source>Toggle Play/Pause</source>
        <translation>播放/暂停</translation>
    </message>
    <message>
        <source>Are you sure you want to leave this page? Changes that you made may not be saved.</source>
        <translation>确定要离开此页面吗？您所做的更改可能不会保存。</translation>
    </message>
</context>
<context>
    <name>UIDelegatesManager</name>
    <message>
        <source>Javascript Alert - %1</source>
        <translation>JavaScript 警告 - %1</translation>
    </message>
    <message>
        <source>Javascript Confirm - %1</source>
        <translation>JavaScript 确认 - %1</translation>
    </message>
    <message>
        <source>Javascript Prompt - %1</source>
        <translation>JavaScript 提示 - %1</translation>
    </message>
    <message>
        <source>Are you sure you want to leave this page?</source>
        <translation>确定要离开此页面吗？</translation>
    </message>
    <message>
        <source>Changes that you made may not be saved.</source>
        <translation>您所做的更改可能不会保存。</translation>
    </message>
</context>
</TS>
