" usage: vim -N -u NONE -i NONE -es -S editors/vim/test/syntax_test.vim, from the root of the project.
" Opens sources of the examples and looks what single places are taken for. Ends with 1 and the differences on the console.
set runtimepath^=editors/vim
filetype plugin on
syntax on

let s:faults = []

" The file, the type it must get, and rows of a line's pattern, a place in it and the group of that place.
let s:cases = [
      \ ['examples/quickstart/main.kvl', 'kvl', [
      \   ['^$BEGIN KVL', 'BEGIN', 'kvlBlock'],
      \   ['^$BEGIN KVL', '"1.0.0"', 'kvlString'],
      \   ['^$BEGIN SCRIPT', 'MAIN', 'kvlCall'],
      \   ['^$HERE ::KVL', '::', 'kvlBasicType'],
      \   ['^$HERE:SET_PATH', 'HERE', 'kvlMethod'],
      \   ['^$HERE:SET_PATH', 'SET_PATH', 'kvlMethodName'],
      \   ['^$::PEOPLE', '::PEOPLE', 'kvlType'],
      \   ['^$P ::PEOPLE', '=', 'kvlOperator'],
      \   ['^$OUT:FILE', 'PEOPLE_SQL', 'kvlCall'],
      \   ['^$OUT:FILE', 'P)', 'kvlName'],
      \ ]],
      \ ['standard/_1/project.kvl', 'kvl', [
      \   ['A command stands between', 'command', 'kvlComment'],
      \   ['^$HERE:FILE', 'OVERVIEW', 'kvlCall'],
      \ ]],
      \ ['standard/_1/_1.kvl', 'kvl', [
      \   ['SET_PATH("./', '$NAME', 'kvlPlaceholder'],
      \   ['REPLACE2_STREAM', 'KVL:STREAM', 'kvlBuiltIn'],
      \   ['REPLACE2_STREAM', '\\r', 'kvlEscape'],
      \   ['IF IS_THERE == FALSE', '==', 'kvlOperator'],
      \   ['IF IS_THERE == FALSE', 'FALSE', 'kvlBoolean'],
      \ ]],
      \ ['examples/quickstart/people_sql.pattern', 'kvlpattern', [
      \   ['^INSERT', 'INSERT', ''],
      \   ['^    (', '$', 'kvlDollar'],
      \   ['^    (', 'P:NAME', 'kvlName'],
      \   ['^    (', "', ", ''],
      \   ['^    (', 'SEPARATOR', 'kvlKeyword'],
      \   ['^$BEGIN ALL', 'ALL', 'kvlKeyword'],
      \ ]],
      \ ['examples/quickstart/people.type', 'kvltype', [
      \   ['^$BEGIN', 'BEGIN', 'kvltypeFrame'],
      \   ['^$TYPE', 'TYPE', 'kvltypeSection'],
      \   ['^::PEOPLE', 'PEOPLE', 'kvltypeDeclared'],
      \   ['^::PEOPLE', 'LIST', 'kvltypeCategory'],
      \   ['NAME', 'NAME', 'kvltypeElement'],
      \   ['NAME', 'INTEGER', 'kvltypeBasic'],
      \   ['NAME', "';'", 'kvltypeWeak'],
      \ ]],
      \ ['examples/colours/colours.type', 'kvltype', [
      \   ['remarks that begin', 'begin', 'kvltypeComment'],
      \ ]],
      \ ]

function s:GroupAt(line, place)
  execute 'keepjumps normal! gg'
  let l:line = search('\V' . (a:line[0] ==# '^' ? '\^' . a:line[1:] : a:line), 'cW')
  let l:column = stridx(getline(l:line), substitute(a:place, '\\\\', '\\', '')) + 1
  return l:line == 0 || l:column == 0 ? 'no such place' : synIDattr(synID(l:line, l:column, 1), 'name')
endfunction

for [s:file, s:type, s:rows] in s:cases
  execute 'edit' s:file
  if &filetype !=# s:type
    call add(s:faults, s:file . ': file type ' . &filetype . ' in place of ' . s:type)
  endif
  for [s:line, s:place, s:group] in s:rows
    let s:found = s:GroupAt(s:line, s:place)
    if s:found !=# s:group
      call add(s:faults, s:file . ': ' . s:place . ' in "' . s:line . '" is ' . s:found . ' in place of ' . s:group)
    endif
  endfor
  " All of these run, so nothing in them is illegal.
  for s:number in range(1, line('$'))
    for s:column in range(1, len(getline(s:number)))
      if synIDattr(synID(s:number, s:column, 1), 'name') =~# 'Illegal\|Reserved'
        call add(s:faults, s:file . ':' . s:number . ': illegal')
      endif
    endfor
  endfor
endfor

for s:fault in s:faults
  verbose echo s:fault . "\n"
endfor
execute empty(s:faults) ? 'qall!' : 'cquit!'
