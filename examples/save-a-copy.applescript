-- Saves the text in Mousepad under another name, by its menu and its dialog:
--     tabwright applescript examples/save-a-copy.applescript /tmp/copy.txt
on run {wanted}
    tell application "System Events" to tell process "Mousepad"
        set frontmost to true
        click menu item "Save As..." of menu "File" of menu bar 1
        repeat 250 times
            if exists text field 1 of sheet 1 of window 1 then exit repeat
            delay 0.02
        end repeat
        tell sheet 1 of window 1
            set value of text field 1 to wanted
            repeat 250 times -- a dialog without a name has nothing to save yet
                if enabled of button "Save" then exit repeat
                delay 0.02
            end repeat
            click button "Save"
        end tell
        repeat 250 times
            if name of window 1 starts with wanted then return name of window 1
            delay 0.02
        end repeat
        error "Mousepad has not saved " & wanted & " within 5 seconds."
    end tell
end run
