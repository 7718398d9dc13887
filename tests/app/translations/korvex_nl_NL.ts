<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="nl_NL">
<context>
    <name>Kiv_Application</name>
    <message>
        <source>English</source>
        <translation>Nederlands</translation>
    </message>
    <message>
        <source>Exception: %1</source>
        <comment>error report</comment>
        <translation>Uitzondering: %1</translation>
    </message>
</context>
<context>
    <name>Kiv_LanguageDialog</name>
    <message>
        <source>Select Language</source>
        <translation>Taal kiezen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuleren</translation>
    </message>
</context>
</TS>
