#!/bin/sh
# In place of yt-dlp: a list of the tracks a to e, whose texts fail in different ways. The text of b is written
# completely, but the program fails.
case "$*" in
*--print*)
  echo 'WARNING: a PO token was not provided' >&2
  for track in a b c d e; do
    tracks="$tracks${tracks:+,}\"$track\":[{\"ext\":\"srv1\",\"url\":\"https://host/?$track\"}]"
  done
  echo "{\"id\":\"code-------\",\"subtitles\":{$tracks}}";;
*)
  input=$(cat); text='<transcript><text start="1" dur="2">words</text></transcript>'
  case "$input" in
  *host/?a*) echo "$text" >c.c.srv1;;
  *host/?b*) echo "$text" >c.c.srv1; exit 1;;
  *host/?c*) >c.c.srv1;;
  *host/?d*) echo "ERROR: $(ulimit -f)" >&2;;
  *) echo '<html>' >c.c.srv1;;
  esac;;
esac
