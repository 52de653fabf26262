<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>pondWicket</name>
    <message>
        <source>(Untitled bookmark)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Welcome to pondWicket</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Computer history</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What’s for dinner?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start at login</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Calendar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide or show tiles</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Home</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add tile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Support</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Settings Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Theme Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Notes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing to see here!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Actions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide notes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show notes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove tile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import links from file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Link application or file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add application or file…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import links from file…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>App, file or folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Web link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mail link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Map link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Message link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Phone link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shortcuts bookmark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add item</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show calendar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Horizontal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Vertical</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Theme</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reinstall missing themes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Application icon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Made by Harrowline</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Address</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Neither an address nor the path of a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tile name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tile Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tiles with a single item will behave as buttons rather than menus.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tile icon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show scratchpad</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
