# Completion of `orvex` for bash. The program itself knows what may stand where.
_orvex() {
    local words=() word offered prefix="" i
    # Bash takes words apart at "=", which is a part of ours.
    for ((i = 1; i <= COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]//\\/}
        if ((${#words[@]} > 0)) && [[ $word == = || ${COMP_WORDS[i - 1]} == = ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
    done
    word=${words[-1]}
    [[ $word != *=* ]] || prefix=${word%%=*}=
    COMPREPLY=()
    while IFS= read -r offered; do
        if [[ $offered == :file ]]; then
            while IFS= read -r offered; do
                [[ ! -d $offered ]] || offered+=/
                COMPREPLY+=("$(printf %q "$offered")")
            done < <(compgen -f -- "$word")
        elif [[ -n $prefix ]]; then
            COMPREPLY+=("$(printf %q "${offered#*=}")")
        else
            COMPREPLY+=("$offered")
        fi
    done < <("${COMP_WORDS[0]}" complete "${words[@]}" 2>/dev/null)
    # More of the word follows behind these.
    [[ ${COMPREPLY[0]-} != *[=./] ]] || compopt -o nospace 2>/dev/null
}
complete -F _orvex orvex
