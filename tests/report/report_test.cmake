# Plays WORDS, a trace first, writes the report of it with the command at STANDBY, opens it in a browser of another time zone and
# has checks.js look at it as the page NAME. WORK is the page's own folder. Without a browser the test fails.
cmake_minimum_required(VERSION 3.25)
find_program(CHROMIUM chromium REQUIRED)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})

# A night whose names try to get out of where they are put.
set(evil [[</script><img src=x onerror=errors.push('evil')><!-- \u2028 \"' &amp; ]])
file(WRITE ${WORK}/evil.jsonl [[{"trace": 1, "start": "2026-03-01T21:00:00", "end": "2026-03-01T23:30:00", "host": ]]
  "{\"persist_allow\": {\"FREEZE\": {\"1\": [\"${evil}\"], \"2\": [\"${evil}\"]}}}, \"device\": {\"processes\": "
  "[{\"pid\": 480, \"uid\": 1010, \"name\": \"${evil}\", \"native\": true}]}}\n"
  "{\"t\": \"2026-03-01T21:05:00\", \"broadcast\": {\"action\": \"COMMON_EVENT_SCREEN_OFF\"}}\n")
file(WRITE ${WORK}/own.json "{}")
file(WRITE ${WORK}/try.json [[{"policy": {"nap_after_s": 60, "sleep_after_s": 120, "half_hour_s": 600}}]])

list(GET WORDS 0 trace)
execute_process(COMMAND ${STANDBY} replay --report night.html ${WORDS} WORKING_DIRECTORY ${WORK} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${STANDBY} replay --unfold ${trace} WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE timeline COMMAND_ERROR_IS_FATAL ANY)

# The checks come in behind the page, and what goes wrong is caught before it.
file(READ ${WORK}/night.html page)
file(READ ${CMAKE_CURRENT_LIST_DIR}/checks.js checks)
string(REPLACE "<meta charset" "<script>const errors = []; addEventListener('error', event => errors.push(event.message));</script>\n<meta charset"
  page "${page}")
string(REPLACE "&" "&amp;" timeline "${timeline}")
string(REPLACE "<" "&lt;" timeline "${timeline}")
file(WRITE ${WORK}/checked.html "${page}<pre id=timeline hidden>${timeline}</pre><pre id=verdict>no verdict</pre>\n"
  "<script>const page = '${NAME}';\n${checks}</script>\n")

execute_process(COMMAND ${CMAKE_COMMAND} -E env HOME=${WORK} TZ=Asia/Tokyo ${CHROMIUM} --headless --no-sandbox --disable-gpu
  --disable-dev-shm-usage --no-first-run --user-data-dir=${WORK}/profile --window-size=1440,900 --virtual-time-budget=20000
  --dump-dom file://${WORK}/checked.html OUTPUT_VARIABLE dom ERROR_FILE ${WORK}/complaints.txt TIMEOUT 240)
if(NOT dom MATCHES "<pre id=\"verdict\">all [0-9]+ checks hold</pre>")
  string(REGEX MATCH "<pre id=\"verdict\">.*</pre>" verdict "${dom}")
  message(FATAL_ERROR "${WORK}/checked.html: ${verdict}\nthe browser's own complaints are in complaints.txt beside it")
endif()
