<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>AppCount</name>
    <message numerus="yes">
        <source>%n apps</source>
        <translation>
            <numerusform>%n app</numerusform>
            <numerusform>%n apps</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::AppPickerPresenter</name>
    <message numerus="yes">
        <source>%n results</source>
        <translation>
            <numerusform>%n result</numerusform>
            <numerusform>%n results</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::FocusCanvasPresenter</name>
    <message numerus="yes">
        <source>Start %n-minute focus</source>
        <translation>
            <numerusform>Start %n-minute focus</numerusform>
            <numerusform>Start %n-minute focus</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::MainWindowPresenter</name>
    <message numerus="yes">
        <source>%n sources active</source>
        <translation>
            <numerusform>%n source active</numerusform>
            <numerusform>%n sources active</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::MixerCanvasPresenter</name>
    <message numerus="yes">
        <source>Mixing %n sources.</source>
        <translation>
            <numerusform>Mixing %n source.</numerusform>
            <numerusform>Mixing %n sources.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n sources</source>
        <translation>
            <numerusform>%n source</numerusform>
            <numerusform>%n sources</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n live</source>
        <translation>
            <numerusform>%n live</numerusform>
            <numerusform>%n live</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n apps connected.</source>
        <translation>
            <numerusform>%n app connected.</numerusform>
            <numerusform>%n apps connected.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n saved</source>
        <translation>
            <numerusform>%n saved</numerusform>
            <numerusform>%n saved</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::MixerPanelPresenter</name>
    <message numerus="yes">
        <source>%n live</source>
        <translation>
            <numerusform>%n live</numerusform>
            <numerusform>%n live</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::SleepTimerPresenter</name>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillmere::TabListModel</name>
    <message numerus="yes">
        <source>%n tabs</source>
        <translation>
            <numerusform>%n tab</numerusform>
            <numerusform>%n tabs</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n tabs open</source>
        <translation>
            <numerusform>%n tab open</numerusform>
            <numerusform>%n tabs open</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>+ %n more</source>
        <translation>
            <numerusform>+ %n more</numerusform>
            <numerusform>+ %n more</numerusform>
        </translation>
    </message>
</context>
</TS>
