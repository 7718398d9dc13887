<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Kiv_Application</name>
    <message>
        <source>Unknown exception in Kiv_Application</source>
        <comment>default error message</comment>
        <translation>Unbekannte Ausnahme in Kiv_Application</translation>
    </message>
    <message>
        <source>Exception: %1</source>
        <comment>error report</comment>
        <translation>Ausnahme: %1</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>Kiv_LanguageDialog</name>
    <message>
        <source>English</source>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>Select Language</source>
        <translation>Sprache auswählen</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Sprache:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
</TS>
