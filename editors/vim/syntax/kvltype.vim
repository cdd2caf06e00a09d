" Types of KVL.
if exists('b:current_syntax')
  finish
endif
syntax case match
syntax sync minlines=200

syntax match kvltypeIllegal /<<\|>>\|[!#%&()*+,\-.\/0-9;?@^`|~\\[\]]/
syntax match kvltypeDollar /\$/
syntax match kvltypeBrace /[{}]/
syntax match kvltypeElement /\<\h\w*\>\ze\_s*::/
syntax match kvltypeReference /::\_s*\h\w*/
syntax match kvltypeDeclared /::\_s*\h\w*\ze\_s*=/
syntax match kvltypeBasic /::\_s*\%(\%(KVL:\)\=\%(STRING\|INTEGER\|FLOAT\|BOOL\)\|IDENTIFIER\|WHITESPACES\)\>/
syntax match kvltypeCategory /::\_s*\%(SEQUENCE\|LIST\|CHOICE\|PERMUTATION\|DISTANCE\|NESTED\|STREAM\|OPTION\|LINE\)\>/
syntax match kvltypeFrame /\$\s*\%(BEGIN\|END\)\s\+KVL\s\+VERSION\s*=/
syntax match kvltypeSection /\$TYPE/
syntax region kvltypeStrict start=/"/ skip=/""/ end=/"/ contains=kvltypeEscape
syntax region kvltypeWeak start=/'/ skip=/''/ end=/'/ contains=kvltypeEscape
syntax match kvltypeEscape /\\[nrtvbfa'"?\\]\|""\|''/ contained
syntax match kvltypeComment /\/\/.*$/ contains=@Spell
syntax region kvltypeComment start=/\/\*/ end=/\*\// contains=@Spell
syntax region kvltypeComment start=/\$\/\*/ end=/\*\_s*\/\_s*\$/ contains=@Spell

highlight default link kvltypeIllegal Error
highlight default link kvltypeDollar Delimiter
highlight default link kvltypeBrace Delimiter
highlight default link kvltypeElement Identifier
highlight default link kvltypeReference Type
highlight default link kvltypeDeclared Typedef
highlight default link kvltypeBasic Type
highlight default link kvltypeCategory Structure
highlight default link kvltypeFrame Statement
highlight default link kvltypeSection Statement
highlight default link kvltypeStrict String
highlight default link kvltypeWeak String
highlight default link kvltypeEscape SpecialChar
highlight default link kvltypeComment Comment

let b:current_syntax = 'kvltype'
