# Completes tabwright's words. Load it with: tabwright completion fish | source
function __tabwright_complete
    set -l words (commandline -opc) (commandline -ct)
    set -l program $words[1]
    set -e words[1]
    for line in ($program complete $words 2>/dev/null)
        if test "$line" = ":files"
            set -l current (commandline -ct)
            if string match -q '@*' -- $current
                for path in (__fish_complete_path (string sub -s 2 -- $current))
                    echo "@$path"
                end
            else
                __fish_complete_path $current
            end
        else
            echo $line
        end
    end
end
complete -c tabwright -f -a '(__tabwright_complete)'
