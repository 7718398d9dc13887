<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR">
<context>
    <name>Kiv_Application</name>
    <message>
        <source>Exception: %1</source>
        <comment>error report</comment>
        <translation>Exceção: %1</translation>
    </message>
</context>
<context>
    <name>Kiv_LanguageDialog</name>
    <message>
        <source>English</source>
        <translation>Português (Brasil)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
</context>
</TS>
