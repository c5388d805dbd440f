# Runs the command at STANDBY as a person at a terminal would, in the folder WORK, and fails unless it answers as it should.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
set(header [[{"trace": 1, "start": 0, "end": 1000, "host": {"mode": "scripted"}, "device": {"sensors": []}}]])
file(WRITE ${WORK}/good.jsonl "${header}\n{\"t\": 500, \"message\": {\"eventId\": 7}}\n")
file(WRITE ${WORK}/bad.jsonl "${header}\n{\"t\": 500, \"set\": {\"light\": \"dark\"}}\n")
file(WRITE ${WORK}/cut.jsonl "${header}\n{\"t\": 500, \"mess")
file(WRITE ${WORK}/config.json "{\"strategies\": [\"FREEZE\"] /* one */}")
file(WRITE ${WORK}/wrong.json "{\"polcy\": {}}")

# answers(STATUS OUT ERR [FROM file] [TO file] words...): the exit status, and what standard output and error match.
# Standard error holds one line or none.
function(answers status out err)
  cmake_parse_arguments(PARSE_ARGV 3 ARG "" "FROM;TO" "")
  set(redirections OUTPUT_VARIABLE output)
  if(ARG_TO)
    set(redirections OUTPUT_FILE ${ARG_TO})
  endif()
  if(ARG_FROM)
    list(APPEND redirections INPUT_FILE ${ARG_FROM})
  endif()
  execute_process(COMMAND ${STANDBY} ${ARG_UNPARSED_ARGUMENTS} WORKING_DIRECTORY ${WORK} TIMEOUT 60
    RESULT_VARIABLE result ERROR_VARIABLE error ${redirections})
  if(NOT "${result}" STREQUAL status OR NOT "${output}" MATCHES "${out}" OR NOT "${error}" MATCHES "${err}")
    message(SEND_ERROR "standby ${ARG_UNPARSED_ARGUMENTS}\nstatus ${result}, not ${status}\n"
      "output, not ${out}:\n${output}\nerror, not ${err}:\n${error}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

# An expression for one line that complains so.
function(complaint variable text)
  set(${variable} "^standby: ${text}[^\n]*\n$" PARENT_SCOPE)
endfunction()

answers(0 "Usage: standby .*replay.*dump.*Exit status:" "^$" --help)
answers(0 "TRACE.*--format FORMAT" "^$" replay --help)
answers(0 "^standby [0-9]+\\.[0-9]+\\.[0-9]+\n$" "^$" --version)

complaint(unusable "[^\n]*try standby --help")
complaint(wrong "[^\n]+")
foreach(words "" "nights" "--loud" "replay" "dump" "replay;good.jsonl;--format;xml" "replay;good.jsonl;--log;trace"
              "dump;good.jsonl;--at;noon" "dump;good.jsonl;--at;1001")
  answers(2 "^$" "${wrong}" ${words})
endforeach()
answers(2 "^$" "${unusable}" replay good.jsonl --colour)

complaint(badTrace "bad.jsonl:2: set.light: \"dark\"; expected a number")
complaint(cutOff "cut.jsonl:2: the trace ends in the middle of a line; expected")
complaint(missing "absent.jsonl: No such file or directory; expected a trace")
complaint(folder "[.]: is a directory; expected a trace")
complaint(wrongConfig "wrong.json: unknown key \"polcy\"; expected")
foreach(command replay dump)
  answers(2 "^$" "${badTrace}" ${command} bad.jsonl)
  answers(2 "^$" "${cutOff}" ${command} cut.jsonl)
  answers(2 "^$" "${missing}" ${command} absent.jsonl)
  answers(2 "^$" "${folder}" ${command} .)
  answers(2 "^$" "${wrongConfig}" ${command} good.jsonl --config wrong.json)
  complaint(noPlugin "[^\n]*absent[.]so")
  answers(1 "^$" "${noPlugin}" ${command} good.jsonl --plugin ${WORK}/absent.so)
  complaint(noPlugin "[^\n]*good[.]jsonl")
  answers(1 "^$" "${noPlugin}" ${command} good.jsonl --plugin ${WORK}/good.jsonl)
  complaint(full "cannot write the output: No space left on device")
  answers(1 "" "${full}" ${command} good.jsonl TO /dev/full)
endforeach()
answers(1 "" "${full}" --help TO /dev/full)

# of several traces one is bad: each bad one is told, none is played
answers(2 "^$" "^standby: cut.jsonl:2: [^\n]*\nstandby: bad.jsonl:2: [^\n]*\n$" replay good.jsonl cut.jsonl bad.jsonl)

answers(0 "Summary\n" "^$" replay good.jsonl good.jsonl)
answers(0 "\nuserSleepState: 0\n.*[^\n]\n$" "^$" dump good.jsonl --at 700)
answers(0 "phone strategy manager init FREEZE.*deliver\":{\"eventId\":7,.*virtual_ms\":1000}}\n$" "^$"
  replay --format jsonl --config config.json good.jsonl)
if(output MATCHES "manager init TIMER")
  message(SEND_ERROR "the configuration file does not replace the strategies")
endif()

# the same bytes every time, from a file as from standard input
answers(0 "\"summary\"" "^$" replay --format jsonl good.jsonl)
set(first "${output}")
answers(0 "" "^$" replay --format jsonl good.jsonl)
set(second "${output}")
answers(0 "" "^$" replay --format jsonl - FROM ${WORK}/good.jsonl)
if(NOT first STREQUAL second OR NOT first STREQUAL output)
  message(SEND_ERROR "one trace gives different records:\n${first}\n${second}\n${output}")
endif()
complaint(badInput "standard input:2: set.light: \"dark\"")
answers(2 "^$" "${badInput}" replay - FROM ${WORK}/bad.jsonl)
complaint(twice "- stands for standard input, which can be read once only")
answers(2 "^$" "${twice}" replay - - FROM ${WORK}/good.jsonl)
