set inputText to "__TEXT__"
tell process "__TARGET__"

  -- Iterate over the single characters
  repeat with i from 1 to count of characters in inputText
    set currentChar to character i of inputText

    -- Bring the browser to the foreground
    tell application id "__TARGET__" to activate

    -- Simulate the key
    keystroke currentChar using {__HELD__}
    key up {__KEYS__}

    -- Add pause before next iteration if necessary
    delay __SECONDS__
  end repeat
end tell
