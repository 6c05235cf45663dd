-- Saves the text in Mousepad under another name, by its menu and its dialog:
--     tabwright applescript examples/save-a-copy.applescript /tmp/copy.txt
on run {wanted}
    tell application "System Events" to tell process "Mousepad"
        set frontmost to true
        click menu item "Save As..." of menu "File" of menu bar 1
        repeat until exists button "Save" of sheet 1 of window 1
            delay 0.02
        end repeat
        tell sheet 1 of window 1
            set value of text field 1 to wanted
            click button "Save"
        end tell
        repeat until name of window 1 starts with wanted
            delay 0.02
        end repeat
        return name of window 1
    end tell
end run
