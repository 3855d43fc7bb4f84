# Completion of corvane-batch's command line for bash.
_corvane_batch()
{
    local word=$2 previous=$3
    local options='--output --files0-from --jobs --settings --set --report --resume --shard --dry-run
        --keep-dates --quiet --json --summary --help --version'
    local keys='Image/Image Image/ColorType Image/ColorRes Image/ColorEnc Image/GrayType Image/GrayRes
        Image/GrayEnc Image/MonoType Image/MonoRes Image/MonoEnc Fonts/Fonts Fonts/Embed Fonts/Com
        Fonts/Sub Secur/Secur Secur/UsrPwd Secur/OwrPwd Secur/AllowPri Secur/AllowMod Secur/AllowCop
        Secur/AllowAdd Annot/Annot Annot/PDFA'

    compopt -o filenames
    case $previous in
        --output) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        --files0-from | --settings | --report) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        --set)
            compopt +o filenames -o nospace
            mapfile -t COMPREPLY < <(compgen -W "$keys" -S = -- "$word")
            ;;
        --jobs | --shard) COMPREPLY=() ;;
        *)
            if [[ $word = -* ]]; then
                compopt +o filenames
                mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
            else
                mapfile -t COMPREPLY < <(compgen -f -- "$word")
            fi
            ;;
    esac
}
complete -F _corvane_batch corvane-batch
