# SPDX-License-Identifier: MIT
# bash completion for quarnel: commands, their options, modes, the values of
# --api, --format, --firmware and --method, and file names where a file goes.

_quarnel_panel_options="--calib --firmware --sample --api --interval --brightness --reading-levels --reading-index"
_quarnel_display_options="--output --all-outputs --backend --display"

# _quarnel_options COMMAND: the options COMMAND takes (groups take only help).
_quarnel_options() {
  local common="-h --help -v --verbose"
  case $1 in
    "") echo "$common --version" ;;
    modes) echo "$common $_quarnel_panel_options --json" ;;
    lut) echo "$common $_quarnel_panel_options --curve -o --format" ;;
    apply) echo "$common $_quarnel_panel_options --curve $_quarnel_display_options --hold -q --quiet" ;;
    show) echo "$common --output --backend --display -o --format" ;;
    reset) echo "$common $_quarnel_display_options" ;;
    "autostart enable") echo "$common $_quarnel_panel_options --curve $_quarnel_display_options -q --quiet" ;;
    "plot chromaticity") echo "$common $_quarnel_panel_options -o" ;;
    "profile install") echo "$common $_quarnel_panel_options --curve --output --device" ;;
    "profile remove") echo "$common --output --device" ;;
    "block inspect") echo "$common --json" ;;
    "block build" | "block measurements" | "block sample") echo "$common -o" ;;
    "string decode") echo "$common --method -o --format" ;;
    "block lot") echo "$common --count --seed --damaged -o" ;;
    qa) echo "$common -q --quiet --csv --json --report -j --jobs --max-duv --min-srgb --min-p3 --min-luminance --min-gamma --max-gamma --outlier" ;;
    *) echo "$common" ;;
  esac
}

# _quarnel_subcommands COMMAND: the commands below COMMAND.
_quarnel_subcommands() {
  case $1 in
    "") echo "modes lut block string version qa apply show reset plot profile autostart" ;;
    autostart) echo "enable disable status" ;;
    block) echo "inspect build measurements sample lot" ;;
    string) echo "encode decode" ;;
    plot) echo "chromaticity" ;;
    profile) echo "install remove list" ;;
  esac
}

# _quarnel_positional COMMAND: what the command's first argument is.
_quarnel_positional() {
  case $1 in
    lut | apply | "profile install" | "autostart enable") echo mode ;;
    "block inspect" | "block build" | "block measurements" | "string encode" | qa) echo file ;;
  esac
}

_quarnel() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
  local modes="slider theater vivid reading-strong reading-weak reading-multi native vx-vivid vx-curve"
  # --option=value: bash splits at the '=', so the option is one word further back.
  if [ "$cur" = "=" ]; then
    prev=${COMP_WORDS[COMP_CWORD - 1]} cur=""
  elif [ "$prev" = "=" ] && [ "$COMP_CWORD" -ge 2 ]; then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  COMPREPLY=()
  case $prev in
    --api) mapfile -t COMPREPLY < <(compgen -W "plain srgb nvidia qcom igcl plain5" -- "$cur") && return ;;
    --format) mapfile -t COMPREPLY < <(compgen -W "csv json cal icc png svg" -- "$cur") && return ;;
    --backend) mapfile -t COMPREPLY < <(compgen -W "wayland x11" -- "$cur") && return ;;
    --firmware | --method) mapfile -t COMPREPLY < <(compgen -W "0 1" -- "$cur") && return ;;
    --calib | --curve | -o | --csv | --json | --report)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      return ;;
    --interval | --brightness | --reading-levels | --reading-index | --output | --display | --device | --count | \
      --seed | --damaged | -j | --jobs | --max-duv | --min-srgb | --min-p3 | --min-luminance | --min-gamma | \
      --max-gamma | --outlier) return ;;
  esac

  # Walk the words before the cursor: the command, then its positional arguments.
  local command="" args=0 i word sub
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    case $word in
      --calib | --curve | -o | --api | --format | --firmware | --method | --interval | --brightness | \
        --reading-levels | --reading-index | --output | --backend | --display | --device | --csv | --json | --report | \
        --count | --seed | --damaged | -j | --jobs | --max-duv | --min-srgb | --min-p3 | --min-luminance | \
        --min-gamma | --max-gamma | --outlier) ((i++)) ;;
      -*) ;;
      *)
        sub=$(_quarnel_subcommands "$command")
        if [ $args -eq 0 ] && [[ " $sub " == *" $word "* ]]; then
          command=${command:+$command }$word
        else
          ((args++))
        fi ;;
    esac
  done

  if [[ $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_quarnel_options "$command")" -- "$cur")
    return
  fi
  sub=$(_quarnel_subcommands "$command")
  if [ -n "$sub" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$sub" -- "$cur")
  elif [ $args -eq 0 ]; then
    case $(_quarnel_positional "$command") in
      mode) mapfile -t COMPREPLY < <(compgen -W "$modes" -- "$cur") ;;
      file)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cur") ;;
    esac
  fi
}
complete -F _quarnel quarnel
