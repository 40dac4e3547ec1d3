# Reads the report of ctest --output-junit and prints one line: "N passed, N failed, N skipped", with the reasons of
# what was skipped behind it. A test that runs a suite counts as its cases, of which it tells at its end; one that begins
# and does not tell has failed. The exit code is 1 where anything failed.

function attribute(name) {
  if (!match($0, "[ \t]" name "=\"[^\"]*\"")) return ""
  return plain(substr($0, RSTART + length(name) + 3, RLENGTH - length(name) - 4))
}
function plain(text) {
  gsub(/&lt;/, "<", text)
  gsub(/&gt;/, ">", text)
  gsub(/&quot;/, "\"", text)
  gsub(/&apos;/, "'", text)
  gsub(/&amp;/, "\\&", text)
  return text
}

function tell(reason) { told = told (told == "" ? ": " : "; ") name " (" reason ")" }

/<testcase / {
  name = attribute("name")
  status = attribute("status")
  reason = status == "disabled" ? status : ""
  awaited = cases = good = skipped = begun = ""
}
/(^|>)Running main\(\)/ { begun = 1 }
# A test that could not be started is none that chose not to run.
/<skipped / {
  reason = attribute("message")
  if (reason !~ /^SKIP_/) status = "fail"
}
# A test program tells "file:line: Skipped" and the reason in the line below.
awaited && NF {
  if (!index(reason, plain($0))) reason = reason ~ /^(SKIP_|$)/ ? plain($0) : reason ", " plain($0)
  awaited = ""
}
/: Skipped$/ { awaited = 1 }
/^\[=+\] [0-9]+ tests? from .* ran\./ { cases = $2 }
/^\[  PASSED  \] [0-9]+ test/ { good = $4 }
/^\[  SKIPPED \] [0-9]+ test/ { skipped = $4 }
/<\/testcase>/ { sub(/<\/system-out>.*/, "", reason) }
# A program that fails when all its cases are over has failed all the same.
/<\/testcase>/ && good != "" && (status == "run" || status == "fail") {
  failed = cases - good - skipped
  count["run"] += good
  count["notrun"] += skipped
  count["fail"] += status == "fail" && failed < 1 ? 1 : failed
  if (skipped) tell(reason)
  next
}
/<\/testcase>/ && begun && status == "run" { status = "fail" }
/<\/testcase>/ { count[status]++ }
/<\/testcase>/ && (status == "notrun" || status == "disabled") { tell(reason) }
END {
  printf "%d passed, %d failed, %d skipped%s\n", count["run"], count["fail"], count["notrun"] + count["disabled"], told
  exit count["fail"] > 0
}
