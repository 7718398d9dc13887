<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>Kiv_Application</name>
    <message>
        <source>Unknown exception in Kiv_Application</source>
        <comment>default error message</comment>
        <translation>Exception inconnue dans Kiv_Application</translation>
    </message>
    <message>
        <source>Exception: %1</source>
        <comment>error report</comment>
        <translation>Exception : %1</translation>
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
        <translation>Français</translation>
    </message>
    <message>
        <source>Select Language</source>
        <translation>Choisir la langue</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Langue :</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
</TS>
